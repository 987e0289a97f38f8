// What a page's menu, keys and buttons do: granted what they need, and what has to be filled afterwards.
#include "shell/frmMain.h"

#include "ui/control.h"

#include <utility>

namespace shell {
namespace {

constexpr int kButtons = 2;

}  // namespace

void frmMain::run_item(ui::Page& page, int item) {
    const ui::Guard guard = page.guard(item);
    if ((guard.alone || guard.blocks_close) && activity_.running()) return;
    if (guard.blocks_close && activity_.close_blocked()) return;
    nothing_kept_ = false;
    {
        std::optional<Activity::Exclusive> alone;
        std::optional<Activity::CloseBlock> close_block;
        if (guard.alone) alone.emplace(activity_);
        if (guard.blocks_close) close_block.emplace(activity_);
        hold_button(page, item);
        const wchar_t* const outer = std::exchange(close_notice_, guard.close_notice);
        const ui::Then then = page.run(item);
        close_notice_ = outer;
        close_block.reset();
        enable_buttons();
        refusal_ends();
        run_then(page, then);
    }
    // The count of a list that is filled again does not cover that there is no copy of what was deleted.
    if (nothing_kept_) set_status(win::kNothingKept);
}

// Within the command where it is alone: the fill comes first when that ends, before what else has waited.
void frmMain::run_then(const ui::Page& page, ui::Then then) {
    switch (then) {
        case ui::Then::Nothing:
            break;
        case ui::Then::FillThis:
            request_fill(page);
            break;
        case ui::Then::Refresh:
            activity_.request({Activity::Request::Refresh});
            break;
    }
}

// While a command runs that blocks the close, no second one starts.
bool frmMain::is_enabled(const ui::Page& page, int item) const {
    return page.enabled(item) && !(page.guard(item).blocks_close && activity_.close_blocked());
}

// ---- the two buttons --------------------------------------------------------------------------------------------

void frmMain::cmdMenu_Click(int index) {
    ui::Page* const page = shown_page();
    const int item = page ? page->item_of_button(index) : ui::Page::kNoItem;
    if (item != ui::Page::kNoItem) run_item(*page, item);
}

// The button whose command runs stays disabled until that has ended, and does not keep the keys to itself.
void frmMain::hold_button(const ui::Page& page, int item) {
    if (&page != shown_page()) return;
    enable_buttons();
    for (int index = 0; index < kButtons; ++index) {
        if (page.item_of_button(index) == item) EnableWindow(control(Element(Control::cmdMenu_0, index)), FALSE);
    }
    if (!IsWindowEnabled(GetFocus())) focus_.to_view();
}

void frmMain::enable_buttons() {
    const ui::Page* const page = shown_page();
    for (int index = 0; index < kButtons; ++index) {
        const int item = page ? page->item_of_button(index) : ui::Page::kNoItem;
        const bool blocked = item != ui::Page::kNoItem && page->guard(item).blocks_close && activity_.close_blocked();
        EnableWindow(control(Element(Control::cmdMenu_0, index)), !blocked);
    }
}

// ---- dropped files ----------------------------------------------------------------------------------------------

void frmMain::drop_waiting_files() {
    while (!dropped_.empty() && !activity_.running()) {
        const auto [page, path] = dropped_.front();
        dropped_.erase(dropped_.begin());
        const Activity::Exclusive alone(activity_);
        run_then(*page, page->drop(path));
    }
}

// ---- pop-up menus -----------------------------------------------------------------------------------------------

// The right button or the context-menu key. Nothing for what no list claims: that is Windows'.
std::optional<LRESULT> frmMain::context_menu(HWND which, POINT screen) {
    ui::Page* const page = pages_.of_window(which);
    if (!page) return {};
    if (activity_.running() || !page->prepare_menu(screen)) return 0;
    const HMENU menu = popups_[static_cast<std::size_t>(pages_.index_of(*page))].get();
    if (menu) TrackPopupMenu(menu, TPM_RIGHTBUTTON, screen.x, screen.y, 0, window_, nullptr);
    return 0;
}

void frmMain::page_menu_opens(int index) {
    const HMENU menu = popups_[static_cast<std::size_t>(index)].get();
    const MenuArray array = *Pages::row(index).popup;
    ui::Page& page = pages_.at(index);
    page.menu_opens();
    for (const ui::MenuItem& item : page.menu()) {
        EnableItem(menu, array, item.index, is_enabled(page, item.index));
        if (const wchar_t* caption = page.caption(item.index)) SetItemCaption(menu, array, item.index, caption);
    }
}

// The shown page where the menu is its own; else the first one whose it is.
ui::Page* frmMain::page_of_menu(MenuArray popup) const {
    ui::Page* const shown = shown_page();
    if (shown && Pages::row(pages_.index_of(*shown)).popup == popup) return shown;
    for (const PageRow& row : AllPageRows()) {
        if (row.popup == popup) return pages_.of(row.list);
    }
    return nullptr;
}

}  // namespace shell
