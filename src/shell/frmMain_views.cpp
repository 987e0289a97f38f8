// Which view is shown, what fills it, and the texts around it.
#include "shell/frmMain.h"

#include "shell/tab_view.h"
#include "ui/control.h"
#include "win/text.h"

#include <algorithm>
#include <utility>

namespace shell {
namespace {

constexpr wchar_t kCountUnit[] = L" 個の項目";

}  // namespace

// ---- what runs --------------------------------------------------------------------------------------------------

void frmMain::request_fill(const ui::Page& page) {
    activity_.request({Activity::Request::Fill, pages_.index_of(page)});
}

void frmMain::run(Activity::Request request) {
    const bool list_is_there = request.kind == Activity::Request::Fill && pages_.at(request.page).list().window();
    if (!list_is_there) create_later_controls();
    hourglass(true);
    switch (request.kind) {
        case Activity::Request::TabClick:
            tb_Click();
            break;
        case Activity::Request::Refresh:
            refresh_shown();
            break;
        case Activity::Request::Fill:
            fill_page(pages_.at(request.page));
            break;
    }
    hourglass(false);
}

// What arrived while something ran: the selection is shown, the focus goes where it was wanted, a file is taken.
void frmMain::settled() {
    if (closed_ || !window_) return;
    if (ui::Page* page = shown_page()) page->catch_up();
    enable_buttons();
    focus_.give_wanted();
    drop_waiting_files();
}

void frmMain::tb_Click() {
    // A list that is hidden until it is filled loses the focus, and takes it back.
    if (GetFocus() == control(RowOf(shown_tab_).view)) focus_.want_view();
    for (ui::Page* page : pages_.all())
        page->leave();
    const bool another = std::exchange(shown_tab_, strip_.selected()) != strip_.selected();
    focus_.set_view(control(RowOf(shown_tab_).view));
    // A control that is shown would show its new text at once, in its former place.
    if (another) HideView(controls_);
    detail_.begin(RowOf(shown_tab_));
    detail_.name_buttons(RowOf(shown_tab_));
    enable_buttons();
    ShowView(controls_, RowOf(shown_tab_), shown_page());
    if (another) arrange();
    fill_shown();
    focus_.give_wanted();
    focus_.leave_hidden();
}

void frmMain::fill_shown() {
    if (ui::Page* page = shown_page()) {
        fill_page(*page);
    } else {
        panel_.fill();
    }
}

// The list is sorted as before, and the texts around it are those of the list as it is now.
void frmMain::fill_page(ui::Page& page) {
    ui::Page* const twin = page.filled_with();
    ui::Page* const shown = shown_page();
    const bool in_view = shown && (shown == &page || shown == twin);
    if (in_view) detail_.clear();
    for (ui::Page* const each : {&page, twin}) {
        if (!each) continue;
        activity_.fill_begins(pages_.index_of(*each));
        each->begin_fill();
    }
    page.fill();
    page.end_fill();
    if (twin) twin->end_fill();
    if (!in_view) return;
    show_count(*shown);
    if (detail_.measure(*shown)) arrange();
}

// What "情報の更新(&U)" of the File menu does.
void frmMain::refresh_shown() {
    switch (RowOf(shown_tab_).refresh) {
        case RefreshKind::Fill:
            fill_shown();
            break;
        case RefreshKind::TabClick:
            tb_Click();
            break;
        case RefreshKind::Nothing:
            break;
    }
}

// ---- what is visible --------------------------------------------------------------------------------------------

void frmMain::place() {
    if (IsIconic(window_)) return;
    RECT client = {};
    GetClientRect(window_, &client);
    const Surroundings around = {client.right, client.bottom,
                                 strip_.height(client.right, controls_.metrics().text_height),
                                 controls_.status_height(), detail_.comments()};
    controls_.arrange(around, RowOf(shown_tab_).detail);
}

// Painted at once: while the border is dragged there is no rest in which it would be done.
void frmMain::arrange() {
    place();
    controls_.paint();
}

// ---- PageHost ---------------------------------------------------------------------------------------------------

void frmMain::show_count(const ui::Page& page) {
    if (&page == shown_page() && RowOf(shown_tab_).counts) set_status(win::ToText(page.list().count()) + kCountUnit);
}

// A row that loses the selection is mostly followed by one that gets it: then the message finds nothing to do.
void frmMain::selection_changed(ui::Page& page) {
    if (&page != shown_page() || activity_.running()) return;
    if (page.list().selected() >= 0) {
        page.catch_up();
    } else {
        PostMessageW(window_, kCatchUpMessage, 0, 0);
    }
}

void frmMain::file_dropped(ui::Page& page, std::wstring path) {
    dropped_.emplace_back(&page, std::move(path));
    if (!activity_.running()) drop_waiting_files();
}

// ---- the tab strip ----------------------------------------------------------------------------------------------

void frmMain::tab_selected() { activity_.request({Activity::Request::TabClick}); }

void frmMain::strip_pressed() {
    if (activity_.running()) {
        focus_.want_view();
    } else {
        focus_.to_view();
    }
}

void frmMain::tab_pointed(const wchar_t* hint) {
    status_.hover(hint ? hint : L"");
    show_status();
}

// Not while a menu, a message box or the open history wants the wheel.
void frmMain::mouse_wheel(int delta) {
    if (in_menu_ || !IsWindowEnabled(window_) || SendMessageW(control(Control::cb), CB_GETDROPPEDSTATE, 0, 0)) return;
    strip_.wheel(delta);
}

}  // namespace shell
