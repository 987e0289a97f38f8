// A report list. The wrapper borrows the control; it owns nothing.
#pragma once

#include "win/platform.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ui {

struct Column {
    const wchar_t* header;
    int width;  // pixels as designed, of which 96 are as wide as the scale of `add_columns`
    int alignment = LVCFMT_LEFT;
};

enum class SortOrder { Ascending, Descending };

class ListView {
public:
    ListView() = default;
    explicit ListView(HWND window) : window_(window) {}

    HWND window() const { return window_; }

    void add_columns(std::span<const Column> columns, int scale) const;
    int column_count() const;
    int header_height() const;  // pixels
    std::wstring header(int column) const;
    int column_width(int column) const;  // pixels
    // Negative widths would mean "fit to contents" to the control and are taken as 0.
    void set_column_width(int column, int pixels) const;

    void show(bool visible) const;
    // Whether the list itself is shown, whatever the window around it is.
    bool visible() const;

    int count() const;
    void clear() const;
    // Appends a row and returns its index, -1 on failure. `data` is a number of the program's own that stays with the
    // row through sorting. `image` is the index in the small image list, kNoImage for none.
    int add_row(std::wstring_view text, LPARAM data = 0, int image = kNoImage) const;
    std::wstring cell(int row, int column) const;  // whole, whatever its length; empty for a row that is not there
    void set_cell(int row, int column, std::wstring_view text) const;
    LPARAM item_data(int row) const;
    void set_item_data(int row, LPARAM data) const;

    // The selected row, -1 for none.
    int selected() const;
    // Selects and focuses the row, for -1 none; the list does not scroll.
    void select(int row) const;
    RECT row_rect(int row) const;  // in the list's client area
    // The first row in view; only scroll_to changes it.
    int top_row() const;
    void scroll_to(int top_row) const;
    // Whether the cell's text is wider than its column shows, or reaches out of the list.
    bool is_cut(int row, int column) const;

    // The first row whose cell equals `text`, -1 for none.
    int find(int column, std::wstring_view text) const;

    // The small image list; the control does not destroy it (LVS_SHAREIMAGELISTS).
    void set_small_images(HIMAGELIST images) const;

    // Stable sort by the text of a column, in the user's locale, ignoring case. The rows' data, selection and focus
    // move along; where the control refuses to sort everything stays.
    void sort(int column, SortOrder order) const;
    // Marks one header with an arrow; -1 for none. Nothing is seen where the system's headers have no arrows.
    void show_sort_arrow(int column, SortOrder order) const;

    struct Hit {
        int row = -1;
        int column = -1;
    };
    // The cell at a point of the list's client area (LVM_SUBITEMHITTEST); row -1 outside every row.
    Hit hit_test(POINT client) const;

    static constexpr int kNoImage = -2;  // I_IMAGENONE: really no icon, unlike index 0

private:
    RECT label_rect(int row, int column) const;  // where the text of a cell has room, in the list's client area

    HWND window_ = nullptr;
};

// While it lives the list does not redraw; at the end it is painted once. The room for `expected` rows is reserved.
// A list that was hidden stays hidden.
class RedrawSuspender {
public:
    explicit RedrawSuspender(const ListView& list, int expected = 0);
    RedrawSuspender(const RedrawSuspender&) = delete;
    RedrawSuspender& operator=(const RedrawSuspender&) = delete;
    ~RedrawSuspender();

private:
    HWND window_;
    bool visible_;
};

}  // namespace ui
