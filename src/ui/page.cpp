#include "ui/page.h"

#include "ui/clipboard.h"
#include "ui/control.h"
#include "ui/drop_files.h"

#include <windowsx.h>

#include <utility>

namespace ui {

void Page::attach(HWND list, PageHost& host, int scale) {
    list_ = ListView(list);
    host_ = &host;
    list_.add_columns(columns_, scale);
    subclass_.install(list, *this);
}

// ---- filling ----------------------------------------------------------------------------------------------------

void Page::begin_fill() {
    filling_ = true;
    pressing_ = false;
    ++fills_;
    forget_cells();
}

void Page::end_fill() {
    sort_again();
    filling_ = false;
    pressed_for_menu_ = false;
    show_waits_ = list_.selected() >= 0;
}

// ---- the selected row -------------------------------------------------------------------------------------------

// A key leaves no cell to copy but the name.
void Page::selection_changed() {
    if (!pressing_) forget_cells();
    show_waits_ = true;
    host_->selection_changed(*this);
}

void Page::catch_up() {
    if (filling_ || !std::exchange(show_waits_, false)) return;
    show(list_.selected());
}

void Page::show_again() {
    if (list_.selected() < 0) {
        host_->show_count(*this);
    } else {
        show_waits_ = true;
        catch_up();
    }
}

void Page::show(int row) {
    if (row >= 0) return;
    host_->show_details({});
    host_->show_count(*this);
}

// ---- the mouse --------------------------------------------------------------------------------------------------

std::optional<LRESULT> Page::handle(UINT message, WPARAM wparam, LPARAM lparam) {
    switch (message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONDBLCLK:
        case WM_RBUTTONDOWN:
        case WM_RBUTTONDBLCLK:
            return mouse_button(message, wparam, lparam);
        case WM_LBUTTONUP:
        case WM_RBUTTONUP:
            // Its press was none, and its menu would open on another row.
            if (std::exchange(press_swallowed_, false)) return 0;
            break;
        case WM_KEYDOWN:
        case WM_CHAR:
            pressed_for_menu_ = false;
            // The rows are not those that the user sees.
            if (filling_) return 0;
            break;
        case WM_MOUSEMOVE:
            pointer_moved({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
            break;
        case WM_DROPFILES:
            host_->file_dropped(*this, TakeFirstDroppedFile(wparam));
            return 0;
        case WM_NOTIFY:
            if (blocks_column(lparam)) return TRUE;
            break;
        default:
            break;
    }
    return {};
}

// The control selects by itself, but scrolls a row that is only partly in view: the button's release, and the menu that
// it brings, would then hit the next one.
std::optional<LRESULT> Page::mouse_button(UINT message, WPARAM wparam, LPARAM lparam) {
    pressed_for_menu_ = false;
    // The rows are not those that the user sees.
    press_swallowed_ = filling_;
    if (filling_) {
        SetFocus(list_.window());
        return 0;
    }
    press({GET_X_LPARAM(lparam), GET_Y_LPARAM(lparam)});
    const int row = list_.selected();
    const int top = top_row_;
    const unsigned fills = fills_;
    pressing_ = true;
    pressed_for_menu_ = message == WM_RBUTTONDOWN;
    // With Ctrl or Shift the control would take the selection away again.
    const LRESULT answer = subclass_.pass_on(message, wparam & ~WPARAM{MK_CONTROL | MK_SHIFT}, lparam);
    // It returns when the button is up, or its menu closed: by then the list may hold other rows.
    if (fills == fills_) {
        if (row >= 0 && list_.selected() < 0) list_.select(row);
        list_.scroll_to(top);
    }
    pressing_ = false;
    return answer;
}

void Page::press(POINT client) {
    const auto hit = list_.hit_test(client);
    pressing_ = true;
    top_row_ = list_.top_row();
    pressed_cell_ = hit.row < 0 ? std::wstring() : list_.cell(hit.row, hit.column);
    set_pointed_cell(pressed_cell_, every_cell_has_a_tip());
    pointer_ = client;
    mouse_down(hit.row);
    show_waits_ = true;
    if (list_.selected() != hit.row) {
        list_.select(hit.row);
        list_.scroll_to(top_row_);
    }
    pressing_ = false;
    if (show_waits_) host_->selection_changed(*this);
}

// Windows reports a move without a movement whenever something under the pointer appears or disappears.
void Page::pointer_moved(POINT client) {
    if (client.x == pointer_.x && client.y == pointer_.y) return;
    pointer_ = client;
    const auto hit = list_.hit_test(client);
    if (hit.row < 0) {
        set_pointed_cell({}, false);
    } else {
        set_pointed_cell(list_.cell(hit.row, hit.column), every_cell_has_a_tip() || list_.is_cut(hit.row, hit.column));
    }
}

void Page::set_pointed_cell(std::wstring text, bool has_tip) {
    std::wstring tip = has_tip ? text : std::wstring();
    pointed_cell_ = std::move(text);
    if (tip == tip_) return;
    tip_ = std::move(tip);
    host_->show_tip(list_.window(), tip_);
}

void Page::forget_cells() {
    pressed_cell_.clear();
    set_pointed_cell({}, false);
}

void Page::leave() {
    if (!list_.window()) return;
    forget_cells();
    pressed_for_menu_ = false;
    pointer_ = {-1, -1};
}

// ---- commands ---------------------------------------------------------------------------------------------------

bool Page::prepare_menu(POINT& screen) {
    if (screen.x == -1 && screen.y == -1) {
        screen = menu_corner();
        menu_key();
        return true;
    }
    POINT client = screen;
    ScreenToClient(list_.window(), &client);
    if (client.y < list_.header_height()) return false;
    // The row that was pressed counts, wherever the button was released.
    if (!std::exchange(pressed_for_menu_, false)) press(client);
    list_.scroll_to(top_row_);
    return true;
}

// Below the selected row, or at the list's corner when that is out of view.
POINT Page::menu_corner() const {
    RECT client = {};
    GetClientRect(list_.window(), &client);
    POINT corner = {client.left, list_.header_height()};
    const int selected = list_.selected();
    const RECT row = selected < 0 ? RECT() : list_.row_rect(selected);
    if (row.bottom > corner.y && row.bottom <= client.bottom) corner.y = row.bottom;
    ClientToScreen(list_.window(), &corner);
    return corner;
}

int Page::item_of_key(WORD key, bool control, bool shift) const {
    return key == L'C' && control && !shift ? kCopyItem : kNoItem;
}

Then Page::run(int item) {
    if (item != kCopyItem) return command(item);
    const int selected = list_.selected();
    const std::wstring& cell = cell_to_copy();
    if (selected >= 0 || !cell.empty()) CopyText(host_->window(), cell.empty() ? list_.cell(selected, 0) : cell);
    return Then::Nothing;
}

// ---- columns ----------------------------------------------------------------------------------------------------

void Page::column_clicked(int column) {
    const int key = sort_column(column);
    const bool flips = sort_.key == key && sort_.order == SortOrder::Ascending;
    sort_ = {key, column, flips ? SortOrder::Descending : SortOrder::Ascending};
    sort_again();
}

void Page::sort_again() const {
    if (sort_.key < 0) return;
    list_.sort(sort_.key, sort_.order);
    list_.show_sort_arrow(sort_.column, sort_.order);
}

// A closed column stays closed, however its border is pulled.
bool Page::blocks_column(LPARAM lparam) const {
    if (closed_column() < 0) return false;
    const auto& change = *reinterpret_cast<const NMHEADERW*>(lparam);
    switch (NotificationOf(lparam).code) {
        case static_cast<UINT>(HDN_BEGINTRACKA):
        case static_cast<UINT>(HDN_BEGINTRACKW):
        case static_cast<UINT>(HDN_DIVIDERDBLCLICKA):
        case static_cast<UINT>(HDN_DIVIDERDBLCLICKW):
            return change.iItem == closed_column();
        case static_cast<UINT>(HDN_ITEMCHANGINGA):
        case static_cast<UINT>(HDN_ITEMCHANGINGW):
            return change.iItem == closed_column() && change.pitem && (change.pitem->mask & HDI_WIDTH) != 0 &&
                   change.pitem->cxy > 0;
        default:
            return false;
    }
}

}  // namespace ui
