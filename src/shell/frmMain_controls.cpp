// The controls: made, given fonts and styles, put in their places.
#include "shell/frmMain.h"

#include "programs/restore_points.h"
#include "programs/uninstall_scan.h"
#include "services/service_list.h"
#include "shell/process_list.h"
#include "startup/startup_scan.h"
#include "sysinfo/control_panel.h"
#include "ui/control.h"
#include "ui/drop_files.h"
#include "ui/link_label.h"
#include "win/file_icon.h"

#include <algorithm>
#include <utility>

namespace shell {
namespace {

constexpr UINT kFullRowSelectAndGridLines = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES;  // 33
constexpr UINT kDoubleBuffer = 0x00010000;  // no flicker while the border is dragged; Windows 2000 ignores it

struct KindRow {
    const wchar_t* window_class;
    DWORD style;
    DWORD extended_style;
};

// In the order of Kind.
constexpr KindRow kKinds[] = {
    {WC_TABCONTROLW, WS_TABSTOP | WS_CLIPSIBLINGS | TCS_MULTILINE | TCS_HOTTRACK, 0},
    {WC_LISTVIEWW, WS_TABSTOP | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS, WS_EX_CLIENTEDGE},
    {L"STATIC", SS_NOPREFIX | SS_CENTERIMAGE, 0},
    {ui::kLinkClass, 0, 0},
    {L"EDIT", WS_TABSTOP, WS_EX_CLIENTEDGE},
    {L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON, 0},
    {L"COMBOBOX", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL, 0},
    {L"STATIC", SS_ETCHEDHORZ, 0},
    {STATUSCLASSNAMEW, SBARS_SIZEGRIP, 0},
};

}  // namespace

void frmMain::create_first_controls() {
    font_ = ui::CreateMessageFont();
    measure();
    create_controls(Moment::Frame);
    create_tabs();
    arrange();
    create_controls(Moment::AtOnce);
    program_images_ = win::CreateSmallIconList();
    for (const Control which : {Control::ListView1_0, Control::ListView1_1}) {
        list(which).add_columns(programs::kProgramColumns, dpi_);
        watch_list(which);
    }
    show_view(RowOf(Tab::Programs));
    show_detail(RowOf(Tab::Programs));
}

// The rest, before anything but the programs is asked for.
void frmMain::create_later_controls() {
    if (control(Control::lvStartUp)) return;
    begin_com();
    create_controls(Moment::Later);
    create_tooltips();
    list(Control::ListView2).add_columns(sysinfo::kControlPanelColumns, dpi_);
    list(Control::lvStartUp).add_columns(startup::kStartupColumns, dpi_);
    list(Control::lvService).add_columns(services::kServiceColumns, dpi_);
    list(Control::lvProcess).add_columns(kProcessColumns, dpi_);
    list(Control::lvRestore).add_columns(programs::kRestoreColumns, dpi_);
    control_panel_images_ = win::CreateSmallIconList();
    list(Control::ListView2).set_small_images(control_panel_images_.get());
    buffer_lists();
    restore_column_widths(Moment::Later);
    ui::SetText(control(Control::txtMemPath), settings_.text(kMemoryReleaseKey));
    watch_list(Control::lvStartUp);
    watch_list(Control::lvService);
    ui::AllowDrops(control(Control::lvStartUp));
    put_in_order();
    show_view(RowOf(shown_tab_));
    arrange();
}

// Not at the start: the list of programs without icons does not need it.
void frmMain::begin_com() {
    if (!apartment_) apartment_.emplace();
}

void frmMain::create_controls(Moment moment) {
    for (const ControlRow& row : AllControls()) {
        if (MomentOf(row) != moment) continue;
        controls_[IndexOf(row.control)] = create_control(row);
        set_font(row);
    }
}

void frmMain::create_tooltips() {
    tooltips_.create(window_, dpi_);
    tooltips_.set_font(font_.get());
    for (const ControlRow& row : AllControls()) {
        if (!row.tip) continue;
        tooltips_.set(control(row.control), row.tip);
        // The box in a combo box takes the mouse.
        if (const HWND box = GetWindow(control(row.control), GW_CHILD)) tooltips_.set(box, row.tip);
    }
    // A row may have been selected already.
    for (const Control value : kDetailValues)
        tooltips_.set(control(value), ui::TextOf(control(value)));
}

// The Tab key walks the controls from the top one down.
void frmMain::put_in_order() {
    HDWP moves = BeginDeferWindowPos(static_cast<int>(kControlCount));
    for (const HWND each : controls_) {
        moves = DeferWindowPos(moves, each, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
    EndDeferWindowPos(moves);
}

HWND frmMain::create_control(const ControlRow& row) {
    const KindRow& kind = kKinds[static_cast<std::size_t>(row.kind)];
    const bool shown =
        MomentOf(row) != Moment::Later && (row.area != Area::List || row.control == RowOf(shown_tab_).view);
    const Rectangle& place = placed_[IndexOf(row.control)];
    return CreateWindowExW(kind.extended_style, kind.window_class, row.text,
                           WS_CHILD | (shown ? WS_VISIBLE : 0) | kind.style | row.style, place.left, place.top,
                           place.width, place.height, window_,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(IdOf(row.control))), instance_, nullptr);
}

// The style of the first list goes to all six.
void frmMain::set_list_styles() {
    const LRESULT first = SendMessageW(control(Control::ListView1_0), LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0);
    const LPARAM style = static_cast<LPARAM>(first) | static_cast<LPARAM>(kFullRowSelectAndGridLines);
    for (const Control which : {Control::ListView1_0, Control::ListView1_1, Control::ListView2, Control::lvStartUp,
                                Control::lvService, Control::lvRestore}) {
        if (control(which)) SendMessageW(control(which), LVM_SETEXTENDEDLISTVIEWSTYLE, 0, style);
    }
}

// From now on nothing flickers; the first painting has nothing to flicker with, and is spared a picture of the list's
// size. A list wants to be painted again with every change of its style, but it would look the same.
void frmMain::buffer_lists() {
    const HWND painted = control(Control::ListView1_0);
    UpdateWindow(painted);
    SendMessageW(painted, LVM_SETEXTENDEDLISTVIEWSTYLE, kDoubleBuffer, kDoubleBuffer);
    set_list_styles();
    ValidateRect(painted, nullptr);
}

// The startup list shows icons of the system's own list, which it must not destroy. That holds icons of every size, so
// it is not loaded before the list is filled.
void frmMain::attach_system_images() {
    SHFILEINFOW info = {};
    const DWORD_PTR images = SHGetFileInfoW(L"C:\\", 0, &info, sizeof info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON);
    list(Control::lvStartUp).set_small_images(reinterpret_cast<HIMAGELIST>(images));
}

void frmMain::set_font(const ControlRow& row) const {
    const bool configured = configured_font_ && TakesConfiguredFont(row.kind);
    const HFONT font = configured ? configured_font_.get() : font_.get();
    if (control(row.control)) SendMessageW(control(row.control), WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
}

void frmMain::measure() {
    const win::WindowDc dc(window_);
    const win::Selected selected(dc.get(), configured_font_ ? configured_font_.get() : font_.get());
    const auto width_of = [&dc](std::wstring_view text) {
        RECT area = {};
        DrawTextW(dc.get(), text.data(), static_cast<int>(text.size()), &area, DT_CALCRECT | DT_SINGLELINE);
        return static_cast<int>(area.right);
    };
    const auto button = [&](std::wstring_view caption) { return width_of(caption) + scaled(20); };
    TEXTMETRICW text = {};
    GetTextMetricsW(dc.get(), &text);
    metrics_.dpi = dpi_;
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

// The height that the strip needs at a width: several rows when the window is narrow. The control itself says so once
// it has that width.
int frmMain::strip_height(int width) {
    if (width == strip_width_) return strip_height_;
    const HWND strip = control(Control::tb);
    const int height = std::max(strip_height_, metrics_.text_height);
    SetWindowPos(strip, nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOREDRAW);
    placed_[IndexOf(Control::tb)] = {0, 0, width, height};
    RECT page = {0, 0, width, scaled(1000)};
    SendMessageW(strip, TCM_ADJUSTRECT, FALSE, reinterpret_cast<LPARAM>(&page));
    strip_width_ = width;
    strip_height_ = page.top;
    InvalidateRect(strip, nullptr, TRUE);
    return strip_height_;
}

Placement frmMain::placement() {
    RECT client = {};
    RECT status_bar = {};
    GetClientRect(window_, &client);
    SendMessageW(control(Control::st), WM_SIZE, 0, 0);
    GetWindowRect(control(Control::st), &status_bar);
    const Surroundings around = {client.right, client.bottom, strip_height(client.right),
                                 status_bar.bottom - status_bar.top};
    return Arrange(metrics_, around, detail_kind());
}

void frmMain::arrange() {
    if (IsIconic(window_)) return;
    const Placement places = placement();
    HDWP moves = BeginDeferWindowPos(static_cast<int>(kControlCount));
    for (const ControlRow& row : AllControls()) {
        const Rectangle& to = places[IndexOf(row.control)];
        const bool stays = std::exchange(placed_[IndexOf(row.control)], to) == to;
        // The status bar places itself.
        if (stays || row.control == Control::st || !control(row.control)) continue;
        const UINT copying = row.kind == Kind::TabStrip ? UINT{SWP_NOCOPYBITS} : 0;
        moves = DeferWindowPos(moves, control(row.control), nullptr, to.left, to.top, to.width, to.height,
                               SWP_NOZORDER | SWP_NOACTIVATE | copying);
    }
    EndDeferWindowPos(moves);
    for (const Control box : {Control::txtSys, Control::txtComment}) {
        if (control(box)) ui::FitScrollBar(control(box));
    }
}

}  // namespace shell
