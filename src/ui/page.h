// One list and everything that happens in it. The window owns the control and says when; the page owns what the list
// does. What every list needs stands here once.
#pragma once

#include "ui/host.h"
#include "ui/list_view.h"
#include "ui/menu.h"
#include "ui/subclass.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ui {

class Page;

// What a command needs while it runs.
struct Guard {
    bool alone = false;         // nothing else may run: refused while something does
    bool blocks_close = false;  // the window does not close, and no second command of this kind starts
    // What the status bar says to a first close while the command waits; the second one ends the wait. Null: the first
    // one does.
    const wchar_t* close_notice = nullptr;
};

// What has to be filled after a command.
enum class Then {
    Nothing,
    FillThis,  // this list
    Refresh,   // what the File menu's refresh does on the shown tab
};

// What a page needs of the window, beside what every feature does.
class PageHost : public Host {
public:
    // The texts of the detail labels, from the first one on; the others are emptied. A text that leads somewhere is
    // shown as a link.
    virtual void show_details(std::span<const std::wstring> values) = 0;
    // The text of the comment box.
    virtual void show_comment(std::wstring_view text) = 0;
    // Writes the number of rows into the status bar where the page's tab counts them.
    virtual void show_count(const Page& page) = 0;
    // The tool tip of a control; empty for none.
    virtual void show_tip(HWND control, std::wstring_view text) = 0;

    // Another row is selected, or none: `catch_up` of the page is wanted, at once or when what runs has ended.
    virtual void selection_changed(Page& page) = 0;
    // A file was dropped on the list: `drop` of the page is wanted, when nothing else runs.
    virtual void file_dropped(Page& page, std::wstring path) = 0;

protected:
    ~PageHost() = default;
};

class Page : private Subclass::Handler {
public:
    Page(const Page&) = delete;
    Page& operator=(const Page&) = delete;
    virtual ~Page() = default;

    // Takes the list over: adds the columns, 96 of whose pixels are as wide as `scale`, and watches the mouse. The
    // control stays the window's and outlives this.
    virtual void attach(HWND list, PageHost& host, int scale);
    const ListView& list() const { return list_; }

    // ---- filling
    // Around the fill of this list, or of both lists that one fill serves.
    void begin_fill();
    void end_fill();
    virtual void fill() = 0;
    // The other list that `fill` fills; null for none.
    virtual Page* filled_with() { return nullptr; }
    // The fill itself brings the list into view, when it has filled it.
    virtual bool appears_when_filled() const { return false; }

    // Every text that `show_comment` may get from this page.
    virtual std::vector<std::wstring> comments() const { return {}; }

    // ---- what the user does
    // The row that is selected has changed (LVN_ITEMCHANGED).
    void selection_changed();
    // Shows the selected row's texts when that is still to be done.
    void catch_up();
    // Writes the shown row's texts once more, or the count, over a text of the window's own.
    void show_again();
    // A mouse button at a point of the list's client area: the row there is selected, the cell is what "項目コピー"
    // copies. The list does not scroll.
    void press(POINT client);
    // WM_CONTEXTMENU at a point of the screen, (-1, -1) for the key: false where no menu belongs, on the headers.
    // `screen` becomes the point at which the menu is to open.
    bool prepare_menu(POINT& screen);
    void column_clicked(int column);
    // Double click or Enter on the selected row.
    virtual void activate() {}
    // The tab has been left: cells that were pressed or pointed at are forgotten.
    void leave();

    // ---- commands: the items of the pop-up menu and what the two buttons do
    virtual std::span<const MenuItem> menu() const { return {}; }
    // The pop-up menu is about to open.
    virtual void menu_opens() {}
    virtual bool enabled(int /*item*/) const { return true; }
    // The caption that an item has now; null where it keeps the one in the table.
    virtual const wchar_t* caption(int /*item*/) const { return nullptr; }
    virtual Guard guard(int /*item*/) const { return {}; }
    Then run(int item);
    static constexpr int kNoItem = -1;
    static constexpr int kCopyItem = 1;  // "項目コピー(&C)" of every pop-up menu
    // The command of a button of the detail area (0 or 1), or of a key of the list; kNoItem for none.
    virtual int item_of_button(int /*button*/) const { return kNoItem; }
    virtual int item_of_key(WORD key, bool control, bool shift) const;
    // A file that was dropped on the list.
    virtual Then drop(const std::wstring& /*path*/) { return Then::Nothing; }

protected:
    explicit Page(std::span<const Column> columns) : columns_(columns) {}

    // Carries out a command other than the copy.
    virtual Then command(int /*item*/) { return Then::Nothing; }
    // What the copy takes; where that is empty the selected row's name.
    virtual const std::wstring& cell_to_copy() const { return pressed_cell_; }
    // The context-menu key, before the menu opens.
    virtual void menu_key() {}
    // A mouse button on a row, or with -1 on empty space.
    virtual void mouse_down(int /*row*/) {}
    // Shows what is to be seen of a row outside the list; -1 for no row.
    virtual void show(int row);
    // The column whose text sorts the rows when the header of `column` is clicked.
    virtual int sort_column(int column) const { return column; }
    // A column that the user must not open (HDN_…); -1 for none.
    virtual int closed_column() const { return -1; }
    // Every cell under the pointer is its own tool tip, not only one that is cut off.
    virtual bool every_cell_has_a_tip() const { return false; }

    PageHost& host() const { return *host_; }
    const std::wstring& pointed_cell() const { return pointed_cell_; }

private:
    struct SortState {
        int key = -1;     // the column whose text is compared; -1: not sorted
        int column = -1;  // the column that was clicked
        SortOrder order = SortOrder::Ascending;
    };

    std::optional<LRESULT> handle(UINT message, WPARAM wparam, LPARAM lparam) override;
    std::optional<LRESULT> mouse_button(UINT message, WPARAM wparam, LPARAM lparam);
    void pointer_moved(POINT client);
    void set_pointed_cell(std::wstring text, bool has_tip);
    void forget_cells();
    void sort_again() const;
    POINT menu_corner() const;
    bool blocks_column(LPARAM lparam) const;  // WM_NOTIFY of the header

    std::span<const Column> columns_;
    ListView list_;
    PageHost* host_ = nullptr;
    Subclass subclass_;
    SortState sort_;
    std::wstring pressed_cell_;
    std::wstring pointed_cell_;
    std::wstring tip_;
    POINT pointer_ = {-1, -1};  // where it last moved
    int top_row_ = 0;           // at the last press
    bool pressing_ = false;
    bool pressed_for_menu_ = false;
    bool press_swallowed_ = false;
    unsigned fills_ = 0;  // so far
    bool filling_ = false;
    bool show_waits_ = false;
};

}  // namespace ui
