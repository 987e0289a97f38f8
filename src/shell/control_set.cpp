#include "shell/control_set.h"

#include "shell/tabs.h"
#include "ui/control.h"
#include "ui/link_label.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace shell {
namespace {

struct KindRow {
    ControlKind kind;
    const wchar_t* window_class;
    DWORD style;
    DWORD extended_style;
};

constexpr KindRow kKinds[] = {
    {ControlKind::TabStrip, WC_TABCONTROLW, WS_TABSTOP | WS_CLIPSIBLINGS | TCS_MULTILINE | TCS_HOTTRACK, 0},
    {ControlKind::ListView, WC_LISTVIEWW,
     WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS, WS_EX_CLIENTEDGE},
    {ControlKind::Label, L"STATIC", SS_NOPREFIX | SS_CENTERIMAGE | SS_NOTIFY, 0},
    {ControlKind::Link, ui::kLinkClass, 0, 0},
    {ControlKind::TextBox, L"EDIT", WS_TABSTOP, WS_EX_CLIENTEDGE},
    {ControlKind::CommandButton, L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON, 0},
    {ControlKind::ComboBox, L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL, 0},
    {ControlKind::Line, L"STATIC", SS_ETCHEDHORZ, 0},
    {ControlKind::StatusBar, STATUSCLASSNAMEW, SBARS_SIZEGRIP, 0},
};

// A text as wide as ten letters of a Japanese font, and its width in pixels where columns and windows were designed.
constexpr wchar_t kDesignedText[] = L"現在状態説明場所名前";
constexpr int kDesignedTextWidth = 120;

constexpr bool InOrder() {
    for (std::size_t i = 0; i < std::size(kKinds); ++i) {
        if (static_cast<std::size_t>(kKinds[i].kind) != i) return false;
    }
    return static_cast<std::size_t>(ControlKind::StatusBar) + 1 == std::size(kKinds);
}
static_assert(InOrder(), "one row for each kind, in the order of the enumeration");

}  // namespace

void ControlSet::begin(int dpi) {
    metrics_.dpi = dpi;
    make_fonts();
    measure();
}

void ControlSet::set_owner(HWND window, HINSTANCE instance) {
    window_ = window;
    instance_ = instance;
}

// ---- making -----------------------------------------------------------------------------------------------------

void ControlSet::create(CreationPhase phase, Control view) {
    for (const ControlRow& row : AllControls()) {
        if (PhaseOf(row) != phase) continue;
        const bool shown = phase != CreationPhase::Later && (row.area != Area::List || row.control == view);
        handles_[IndexOf(row.control)] = create_control(row, shown);
        set_font(row);
    }
}

HWND ControlSet::create_control(const ControlRow& row, bool shown) const {
    const KindRow& kind = kKinds[static_cast<std::size_t>(row.kind)];
    const Rectangle& bounds = placed_[IndexOf(row.control)];
    return CreateWindowExW(kind.extended_style, kind.window_class, row.text,
                           WS_CHILD | (shown ? WS_VISIBLE : 0) | kind.style | row.style, bounds.left, bounds.top,
                           bounds.width, bounds.height, window_,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(IdOf(row.control))), instance_, nullptr);
}

void ControlSet::finish() {
    create_tips();
    put_in_order();
    drop_list_.attach(at(Control::cb));
}

void ControlSet::create_tips() {
    tips_.create(window_, metrics_.dpi);
    tips_.set_font(font_.get());
    for (const ControlRow& row : AllControls()) {
        // A row may have been selected already, whose values are their labels' tips.
        if (row.kind == ControlKind::Link) tips_.set(at(row.control), ui::TextOf(at(row.control)));
        if (row.kind == ControlKind::Label || row.kind == ControlKind::StatusBar) tips_.set_whole_text(at(row.control));
        if (row.tip) set_tip(row.control, row.tip);
    }
}

void ControlSet::set_tip(Control which, std::wstring_view text) const {
    tips_.set(at(which), text);
    // The box in a combo box takes the mouse.
    if (const HWND box = GetWindow(at(which), GW_CHILD)) tips_.set(box, text);
}

void ControlSet::reported(Control which, int code) const {
    const ControlRow& row = RowOf(which);
    if (row.kind == ControlKind::TextBox && code == EN_SETFOCUS && (row.style & ES_READONLY)) HideCaret(at(which));
    if (row.kind != ControlKind::ComboBox) return;
    if (code == CBN_DROPDOWN) {
        ui::DropList::widen(at(which));
        set_tip(which, {});
    } else if (code == CBN_CLOSEUP) {
        set_tip(which, row.tip);
    }
}

// The Tab key walks the controls from the top one down.
void ControlSet::put_in_order() const {
    HDWP moves = BeginDeferWindowPos(static_cast<int>(kControlCount));
    for (const HWND each : handles_) {
        moves = DeferWindowPos(moves, each, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
    EndDeferWindowPos(moves);
}

const ControlRow* ControlSet::row_of(HWND which) const {
    const auto it = std::find(handles_.begin(), handles_.end(), which);
    if (!which || it == handles_.end()) return nullptr;
    return &RowOf(static_cast<Control>(it - handles_.begin()));
}

// ---- fonts ------------------------------------------------------------------------------------------------------

void ControlSet::use_face(const std::wstring& face) {
    face_ = face;
    renew_fonts();
}

// The old fonts live until every control has a new one.
void ControlSet::renew_fonts() {
    const win::Font former = std::move(font_);
    const win::Font former_configured = std::move(configured_font_);
    make_fonts();
    for (const ControlRow& row : AllControls())
        set_font(row);
    tips_.set_font(font_.get());
    measure();
}

void ControlSet::make_fonts() {
    font_ = ui::CreateMessageFont();
    if (face_.empty()) return;
    LOGFONTW look = {};
    GetObjectW(font_.get(), sizeof look, &look);
    lstrcpynW(look.lfFaceName, face_.c_str(), LF_FACESIZE);
    configured_font_.reset(CreateFontIndirectW(&look));
}

void ControlSet::set_font(const ControlRow& row) const {
    const bool configured = configured_font_ && TakesConfiguredFont(row.kind);
    const HFONT font = configured ? configured_font_.get() : font_.get();
    if (at(row.control)) SendMessageW(at(row.control), WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
}

void ControlSet::measure() {
    const win::WindowDc dc(window_);
    const win::Selected selected(dc.get(), configured_font_ ? configured_font_.get() : font_.get());
    const auto width_of = [&dc](std::wstring_view text) {
        RECT area = {};
        DrawTextW(dc.get(), text.data(), static_cast<int>(text.size()), &area, DT_CALCRECT | DT_SINGLELINE);
        return static_cast<int>(area.right);
    };
    const auto button = [&](std::wstring_view caption) { return width_of(caption) + scaled(20); };
    metrics_.scale = std::max(metrics_.dpi, MulDiv(96, width_of(kDesignedText), kDesignedTextWidth));
    TEXTMETRICW text = {};
    GetTextMetricsW(dc.get(), &text);
    metrics_.text_height = text.tmHeight;
    metrics_.edit_height = text.tmHeight + scaled(7);
    metrics_.button_height = std::max<int>(text.tmHeight + scaled(9), scaled(22));
    metrics_.button_width = std::max({button(RowOf(Control::cmdMenu_0).text), button(RowOf(Control::cmdMenu_1).text),
                                      button(kCreateCaption), scaled(88)});
    metrics_.release_width = std::max(button(RowOf(Control::cmdSys_0).text), scaled(48));
    metrics_.browse_width = button(RowOf(Control::cmdSys_1).text);
    metrics_.caption_width = 0;
    for (const TabRow& tab : AllTabs()) {
        for (const wchar_t* caption : tab.captions) {
            metrics_.caption_width = std::max(metrics_.caption_width, width_of(caption) + scaled(2));
        }
    }
    metrics_.memory_caption_width = 0;
    for (Control caption = Control::lblMemory; caption <= Control::lblMemCaption_4; caption = Element(caption, 1)) {
        const bool is_value = caption >= Control::lblMem_0 && (IndexOf(caption) - IndexOf(Control::lblMem_0)) % 2 == 0;
        if (is_value) continue;
        metrics_.memory_caption_width =
            std::max(metrics_.memory_caption_width, width_of(RowOf(caption).text) + scaled(2));
    }
    metrics_.memory_value_width = width_of(L"9999999/9999999 MB");
    metrics_.heading_width = 0;
    for (const Control heading : {Control::lblRelease, Control::Label1_50}) {
        metrics_.heading_width = std::max(metrics_.heading_width, width_of(RowOf(heading).text) + scaled(2));
    }
}

// ---- placing ----------------------------------------------------------------------------------------------------

int ControlSet::status_height() const {
    RECT bounds = {};
    SendMessageW(at(Control::st), WM_SIZE, 0, 0);
    GetWindowRect(at(Control::st), &bounds);
    return bounds.bottom - bounds.top;
}

// Nothing is painted here, and nothing of the old picture is copied: what lies under a control changes along with its
// place.
void ControlSet::arrange(const Surroundings& around, DetailKind detail) {
    const Placement places = Arrange(metrics_, around, detail);
    HDWP moves = BeginDeferWindowPos(static_cast<int>(kControlCount));
    for (const ControlRow& row : AllControls()) {
        const Rectangle& to = places[IndexOf(row.control)];
        const bool stays = std::exchange(placed_[IndexOf(row.control)], to) == to;
        // The status bar places itself, the strip has been given a width to measure its height.
        if ((stays && row.control != Control::tb) || row.control == Control::st || !at(row.control)) continue;
        moves = DeferWindowPos(moves, at(row.control), nullptr, to.left, to.top, to.width, to.height,
                               SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    }
    EndDeferWindowPos(moves);
    for (const Control box : {Control::txtSys, Control::txtComment}) {
        if (at(box)) ui::FitScrollBar(at(box));
    }
}

bool ControlSet::fill(int width, int height) const {
    const Rectangle& lowest = placed_[IndexOf(Control::st)];
    return lowest.right() == width && lowest.bottom() == height;
}

// Control by control: with the controls' frames in one call would come the window's own, title and menu.
void ControlSet::paint() const {
    InvalidateRect(window_, nullptr, TRUE);
    for (const HWND control : handles_) {
        if (control) ui::InvalidateAll(control);
    }
    RedrawWindow(window_, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
}

}  // namespace shell
