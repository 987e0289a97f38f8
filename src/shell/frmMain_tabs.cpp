// The tab strip: which view it shows, and its filling.
#include "shell/frmMain.h"

#include "ui/control.h"
#include "ui/link_label.h"
#include "win/text.h"

#include <algorithm>

namespace shell {
namespace {

constexpr wchar_t kCountUnit[] = L" 個の項目";

constexpr wchar_t kCreateTip[] = L"復元ポイントを作成します";
// Without a mnemonic from the first tab click on; the designed caption has one.
constexpr wchar_t kForcedCaption[] = L"強制削除";

constexpr Control kDetailCaptions[] = {Control::Label1_0, Control::Label1_1, Control::Label1_6};

}  // namespace

void frmMain::create_tabs() {
    for (const TabRow& row : AllTabs()) {
        if (!has_tab(row.tab)) continue;
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = const_cast<wchar_t*>(row.caption);
        SendMessageW(control(Control::tb), TCM_INSERTITEMW, tabs_.size(), reinterpret_cast<LPARAM>(&item));
        tabs_.push_back(row.tab);
    }
    const HWND strip = control(Control::tb);
    SetWindowLongPtrW(strip, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    strip_procedure_ =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(strip, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&StripProcedure)));
}

// The list of processes has no tab, though it could be filled.
bool frmMain::has_tab(Tab tab) const {
    return tab != Tab::Processes && (tab != Tab::Restore || win::HasSystemRestore(os_));
}

Tab frmMain::selected_tab() const {
    const LRESULT place = SendMessageW(control(Control::tb), TCM_GETCURSEL, 0, 0);
    return place < 0 ? Tab::Programs : tabs_[static_cast<std::size_t>(place)];
}

void frmMain::select_tab(int place) {
    SendMessageW(control(Control::tb), TCM_SETCURSEL, static_cast<WPARAM>(place), 0);
    activity_.request(Activity::Request::TabClick);
}

void frmMain::step_tab(int direction, bool wrap) {
    const int tabs = static_cast<int>(tabs_.size());
    const int present = static_cast<int>(SendMessageW(control(Control::tb), TCM_GETCURSEL, 0, 0));
    const int next = wrap ? (present + direction + tabs) % tabs : present + direction;
    if (next >= 0 && next < tabs) select_tab(next);
}

// Not while a menu, a message box or the open history wants the wheel. Fine wheels turn in parts of a notch.
void frmMain::mouse_wheel(int delta) {
    if (in_menu_ || !IsWindowEnabled(window_) || SendMessageW(control(Control::cb), CB_GETDROPPEDSTATE, 0, 0)) return;
    wheel_ += delta;
    for (; wheel_ <= -WHEEL_DELTA; wheel_ += WHEEL_DELTA)
        step_tab(+1, false);
    for (; wheel_ >= WHEEL_DELTA; wheel_ -= WHEEL_DELTA)
        step_tab(-1, false);
}

void frmMain::run(Activity::Request request) {
    if (request != Activity::Request::Rescan) create_later_controls();
    hourglass(true);
    switch (request) {
        case Activity::Request::TabClick:
            tb_Click();
            break;
        case Activity::Request::Refresh:
            refresh_shown();
            break;
        case Activity::Request::Rescan:
            fill_programs();
            break;
        case Activity::Request::Startup:
            fill_startup();
            break;
        case Activity::Request::Catalogue:
            fill_control_panel();
            break;
    }
    hourglass(false);
}

void frmMain::tb_Click() {
    // A list that is hidden until it is filled loses the focus, and takes it back.
    if (GetFocus() == control(RowOf(shown_tab_).view)) focus_view_wanted_ = true;
    shown_tab_ = selected_tab();
    const TabRow& row = RowOf(shown_tab_);
    show_view(row);
    show_detail(row);
    name_second_button(shown_tab_);
    enable_buttons();
    arrange();
    fill(shown_tab_);
    if (std::exchange(focus_view_wanted_, false)) {
        focus_view();
    } else {
        keep_focus();
    }
}

void frmMain::show_view(const TabRow& row) {
    for (const ControlRow& each : AllControls()) {
        // Services, processes and restore points come into view when they are filled.
        const bool later = each.control == Control::lvService || each.control == Control::lvProcess;
        if (!control(each.control)) continue;
        if (each.area == Area::List) ui::Show(control(each.control), each.control == row.view && !later);
        if (each.area == Area::Information) ui::Show(control(each.control), row.tab == Tab::SystemInformation);
    }
}

void frmMain::show_detail(const TabRow& row) {
    const bool services = row.tab == Tab::Services;
    const bool restore = row.tab == Tab::Restore;
    for (const Control each : {Control::Label1_0, Control::Label1_6}) {
        ui::Show(control(each), row.shows_detail);
    }
    ui::Show(control(Control::Label1_1), row.shows_detail && !services && !restore);
    for (const Control each : kDetailValues)
        ui::Show(control(each), row.shows_detail && !services && !restore);
    ui::Show(control(Control::txtComment), services);
    ui::Show(control(Control::cmdMenu_0), row.shows_detail && !services);
    ui::Show(control(Control::cmdMenu_1), is_program_list(row.view) || restore);

    for (std::size_t i = 0; i < std::size(kDetailCaptions); ++i) {
        ui::SetText(control(kDetailCaptions[i]), row.captions[i]);
    }
    clear_detail_values();
    if (row.delete_tip) tooltips_.set(control(Control::cmdMenu_0), row.delete_tip);
}

// The caption and tool tip of the second button, from the first tab click on.
void frmMain::name_second_button(Tab tab) {
    const bool creates = tab == Tab::Restore;
    ui::SetText(control(Control::cmdMenu_1), creates ? kCreateCaption : kForcedCaption);
    tooltips_.set(control(Control::cmdMenu_1), creates ? kCreateTip : kForcedUninstallTip);
}

void frmMain::clear_detail_values() {
    for (const Control value : kDetailValues)
        set_detail_value(value, L"", false);
    ui::SetText(control(Control::txtComment), L"");
}

void frmMain::set_detail_value(Control label, std::wstring_view text, bool is_link) {
    ui::SetText(control(label), text);
    tooltips_.set(control(label), text);
    ui::SetLink(control(label), is_link);
}

void frmMain::fill(Tab tab) {
    using Filler = void (frmMain::*)();
    // In the order of Tab.
    static constexpr Filler kFillers[] = {
        &frmMain::fill_programs, &frmMain::fill_programs,      &frmMain::fill_startup,        &frmMain::fill_processes,
        &frmMain::fill_services, &frmMain::fill_control_panel, &frmMain::fill_restore_points, &frmMain::fill_report,
    };
    const Filler filler = kFillers[static_cast<std::size_t>(tab)];
    (this->*filler)();
}

// What "情報の更新(&U)" of the File menu does.
void frmMain::refresh_shown() {
    switch (shown_tab_) {
        case Tab::Programs:
        case Tab::Updates:
        case Tab::Startup:
            fill(shown_tab_);
            break;
        case Tab::Services:
        case Tab::Restore:
            tb_Click();
            break;
        default:
            break;
    }
}

// The end of every fill: the list is sorted as before, and the count is written when the list is the one shown.
void frmMain::list_filled(Control which) {
    sort_again(which);
    const TabRow& row = RowOf(shown_tab_);
    if (row.view != which || !row.counts) return;
    status(win::ToText(list(which).count()) + kCountUnit);
}

DetailKind frmMain::detail_kind() const {
    const TabRow& row = RowOf(shown_tab_);
    if (!row.shows_detail) return DetailKind::None;
    return shown_tab_ == Tab::Services ? DetailKind::Comment : DetailKind::Rows;
}

// The tab at a point of the strip, -1 for none.
int frmMain::tab_at(POINT client) const {
    TCHITTESTINFO hit = {client, 0};
    return static_cast<int>(SendMessageW(control(Control::tb), TCM_HITTEST, 0, reinterpret_cast<LPARAM>(&hit)));
}

void frmMain::tb_MouseMove(POINT client) {
    const int place = tab_at(client);
    if (place == hovered_tab_) return;
    hovered_tab_ = place;
    const bool on_tab = place >= 0 && place < static_cast<int>(tabs_.size());
    const wchar_t* hint = on_tab ? RowOf(tabs_[static_cast<std::size_t>(place)]).hover : nullptr;
    status_.hover(hint ? hint : L"");
    show_status();
}

void frmMain::tb_MouseLeave() {
    hovered_tab_ = -1;
    status_.hover(L"");
    show_status();
}

}  // namespace shell
