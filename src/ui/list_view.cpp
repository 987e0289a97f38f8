#include "ui/list_view.h"

#include "ui/control.h"

#include <algorithm>
#include <limits>

namespace ui {
namespace {

// Newer header formats than the declared system version; Windows 2000 ignores them.
constexpr int kHeaderSortUp = 0x0400;
constexpr int kHeaderSortDown = 0x0200;

// Most texts are shorter: they need no memory of their own on their way into a cell and out of it.
constexpr std::size_t kUsualLength = 260;

LRESULT Send(HWND window, UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    return SendMessageW(window, message, wparam, lparam);
}

template <class Pointee>
LPARAM Pointer(Pointee* pointee) {
    return reinterpret_cast<LPARAM>(pointee);
}

// A text with the NUL at its end that the control wants.
class ZeroTerminated {
public:
    explicit ZeroTerminated(std::wstring_view text) {
        if (text.size() < kUsualLength) {
            usual_[text.copy(usual_, kUsualLength)] = L'\0';
        } else {
            long_ = text;
        }
    }
    wchar_t* text() { return long_.empty() ? usual_ : long_.data(); }

private:
    wchar_t usual_[kUsualLength];
    std::wstring long_;
};

// Bytes that compare as the texts do in the user's locale without regard to case (CompareStringW). Made once for a row,
// they spare the sorting most of its time.
std::string SortKey(const std::wstring& text) {
    constexpr DWORD kFlags = LCMAP_SORTKEY | NORM_IGNORECASE;
    const int size = LCMapStringW(LOCALE_USER_DEFAULT, kFlags, text.c_str(), -1, nullptr, 0);
    std::string key(static_cast<std::size_t>(std::max(size, 0)), '\0');
    LCMapStringW(LOCALE_USER_DEFAULT, kFlags, text.c_str(), -1, reinterpret_cast<wchar_t*>(key.data()), size);
    return key;
}

int CALLBACK CompareData(LPARAM left, LPARAM right, LPARAM) { return left < right ? -1 : left > right; }

}  // namespace

void ListView::add_columns(std::span<const Column> columns, int scale) const {
    const RedrawSuspender fill(*this);
    int index = 0;
    for (const Column& column : columns) {
        LVCOLUMNW record = {};
        record.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM | LVCF_FMT;
        record.fmt = column.alignment;
        record.pszText = const_cast<wchar_t*>(column.header);
        record.cx = MulDiv(column.width, scale, 96);
        record.iSubItem = index;
        Send(window_, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index++), Pointer(&record));
    }
}

int ListView::column_count() const {
    const HWND header = reinterpret_cast<HWND>(Send(window_, LVM_GETHEADER));
    return static_cast<int>(std::max<LRESULT>(Send(header, HDM_GETITEMCOUNT), 0));
}

int ListView::header_height() const {
    RECT bounds = {};
    GetWindowRect(reinterpret_cast<HWND>(Send(window_, LVM_GETHEADER)), &bounds);
    return static_cast<int>(bounds.bottom - bounds.top);
}

std::wstring ListView::header(int column) const {
    wchar_t text[kUsualLength] = {};
    LVCOLUMNW record = {};
    record.mask = LVCF_TEXT;
    record.pszText = text;
    record.cchTextMax = kUsualLength;
    Send(window_, LVM_GETCOLUMNW, static_cast<WPARAM>(column), Pointer(&record));
    return text;
}

int ListView::column_width(int column) const {
    return static_cast<int>(Send(window_, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(column)));
}

void ListView::set_column_width(int column, int pixels) const {
    Send(window_, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(column), MAKELPARAM(std::clamp(pixels, 0, 0x7FFF), 0));
}

void ListView::show(bool visible) const { Show(window_, visible); }

bool ListView::visible() const { return IsShown(window_); }

int ListView::count() const { return static_cast<int>(Send(window_, LVM_GETITEMCOUNT)); }

void ListView::clear() const { Send(window_, LVM_DELETEALLITEMS); }

int ListView::add_row(std::wstring_view text, LPARAM data, int image) const {
    ZeroTerminated terminated(text);
    LVITEMW item = {};
    item.mask = LVIF_TEXT | LVIF_IMAGE | LVIF_PARAM;
    item.iItem = std::numeric_limits<int>::max();  // behind the last one, wherever that is
    item.pszText = terminated.text();
    item.iImage = image;
    item.lParam = data;
    return static_cast<int>(Send(window_, LVM_INSERTITEMW, 0, Pointer(&item)));
}

std::wstring ListView::cell(int row, int column) const {
    if (row < 0) return {};
    const auto read = [&](wchar_t* text, std::size_t room) {
        LVITEMW item = {};
        item.iSubItem = column;
        item.pszText = text;
        item.cchTextMax = static_cast<int>(room);
        return static_cast<std::size_t>(Send(window_, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), Pointer(&item)));
    };
    wchar_t usual[kUsualLength];
    std::size_t length = read(usual, kUsualLength);
    if (length + 1 < kUsualLength) return {usual, length};
    std::wstring text(kUsualLength, L'\0');
    do {
        text.resize(text.size() * 4);
        length = read(text.data(), text.size());
    } while (length + 1 >= text.size());
    text.resize(length);
    return text;
}

void ListView::set_cell(int row, int column, std::wstring_view text) const {
    ZeroTerminated terminated(text);
    LVITEMW item = {};
    item.iSubItem = column;
    item.pszText = terminated.text();
    Send(window_, LVM_SETITEMTEXTW, static_cast<WPARAM>(row), Pointer(&item));
}

LPARAM ListView::item_data(int row) const {
    LVITEMW item = {};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    return Send(window_, LVM_GETITEMW, 0, Pointer(&item)) ? item.lParam : 0;
}

void ListView::set_item_data(int row, LPARAM data) const {
    LVITEMW item = {};
    item.mask = LVIF_PARAM;
    item.iItem = row;
    item.lParam = data;
    Send(window_, LVM_SETITEMW, 0, Pointer(&item));
}

int ListView::selected() const {
    return static_cast<int>(Send(window_, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
}

RECT ListView::row_rect(int row) const {
    RECT bounds = {};
    bounds.left = LVIR_BOUNDS;
    Send(window_, LVM_GETITEMRECT, static_cast<WPARAM>(row), Pointer(&bounds));
    return bounds;
}

int ListView::top_row() const { return static_cast<int>(Send(window_, LVM_GETTOPINDEX)); }

void ListView::scroll_to(int top_row) const {
    const RECT bounds = this->row_rect(0);
    const int rows = top_row - this->top_row();
    if (rows != 0) Send(window_, LVM_SCROLL, 0, rows * (bounds.bottom - bounds.top));
}

RECT ListView::label_rect(int row, int column) const {
    RECT bounds = {};
    bounds.top = column;
    bounds.left = LVIR_LABEL;
    if (column > 0) {
        Send(window_, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), Pointer(&bounds));
    } else {
        Send(window_, LVM_GETITEMRECT, static_cast<WPARAM>(row), Pointer(&bounds));
        bounds.right = row_rect(row).left + column_width(0);
    }
    return bounds;
}

bool ListView::is_cut(int row, int column) const {
    // What the control leaves free at each end of a text, about, in pixels.
    constexpr int kPadding = 6;
    const std::wstring text = cell(row, column);
    if (text.empty()) return false;
    // The control draws no more.
    if (text.size() >= kUsualLength) return true;
    const auto width = static_cast<int>(Send(window_, LVM_GETSTRINGWIDTHW, 0, Pointer(text.c_str())));
    const RECT room = label_rect(row, column);
    if (width + 2 * kPadding > room.right - room.left) return true;
    LVCOLUMNW format = {};
    format.mask = LVCF_FMT;
    Send(window_, LVM_GETCOLUMNW, static_cast<WPARAM>(column), Pointer(&format));
    const bool at_right = (format.fmt & LVCFMT_JUSTIFYMASK) == LVCFMT_RIGHT;
    const int start = at_right ? room.right - kPadding - width : room.left + kPadding;
    RECT client = {};
    GetClientRect(window_, &client);
    return start < 0 || start + width > client.right;
}

void ListView::select(int row) const {
    LVITEMW item = {};
    item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    item.state = row < 0 ? 0 : LVIS_SELECTED | LVIS_FOCUSED;
    Send(window_, LVM_SETITEMSTATE, static_cast<WPARAM>(row), Pointer(&item));
}

int ListView::find(int column, std::wstring_view text) const {
    for (int row = 0, rows = count(); row < rows; ++row) {
        if (cell(row, column) == text) return row;
    }
    return -1;
}

void ListView::set_small_images(HIMAGELIST images) const {
    Send(window_, LVM_SETIMAGELIST, LVSIL_SMALL, Pointer(images));
}

void ListView::sort(int column, SortOrder order) const {
    struct Row {
        std::string key;
        LPARAM data;
        int index;
    };
    std::vector<Row> rows(static_cast<std::size_t>(count()));
    for (int index = 0; Row & row : rows) {
        row = {SortKey(cell(index, column)), item_data(index), index};
        ++index;
    }
    std::stable_sort(rows.begin(), rows.end(), [order](const Row& left, const Row& right) {
        return order == SortOrder::Ascending ? left.key < right.key : right.key < left.key;
    });
    // The control only ever compares ranks: nothing is asked of it while it sorts.
    const RedrawSuspender painted_once(*this);
    for (int rank = 0; const Row& row : rows)
        set_item_data(row.index, rank++);
    const bool sorted = Send(window_, LVM_SORTITEMS, 0, reinterpret_cast<LPARAM>(&CompareData)) != 0;
    for (int rank = 0; const Row& row : rows)
        set_item_data(sorted ? rank++ : row.index, row.data);
}

void ListView::show_sort_arrow(int column, SortOrder order) const {
    const HWND header = reinterpret_cast<HWND>(Send(window_, LVM_GETHEADER));
    for (int index = 0, columns = column_count(); index < columns; ++index) {
        HDITEMW item = {};
        item.mask = HDI_FORMAT;
        Send(header, HDM_GETITEMW, static_cast<WPARAM>(index), Pointer(&item));
        const int old = item.fmt;
        item.fmt &= ~(kHeaderSortUp | kHeaderSortDown);
        if (index == column) item.fmt |= order == SortOrder::Ascending ? kHeaderSortUp : kHeaderSortDown;
        if (item.fmt != old) Send(header, HDM_SETITEMW, static_cast<WPARAM>(index), Pointer(&item));
    }
}

ListView::Hit ListView::hit_test(POINT client) const {
    LVHITTESTINFO hit = {};
    hit.pt = client;
    hit.flags = LVHT_ONITEM;
    if (Send(window_, LVM_SUBITEMHITTEST, 0, Pointer(&hit)) < 0 || hit.iItem < 0) return {};
    return {hit.iItem, hit.iSubItem};
}

RedrawSuspender::RedrawSuspender(const ListView& list, int expected)
    : window_(list.window()), visible_(list.visible()) {
    Send(window_, WM_SETREDRAW, FALSE);
    if (expected > 0) Send(window_, LVM_SETITEMCOUNT, static_cast<WPARAM>(expected));
}

RedrawSuspender::~RedrawSuspender() {
    Send(window_, WM_SETREDRAW, TRUE);
    // Redraw switched on makes a hidden window visible; it must stay what it was.
    if (!visible_) SetWindowLongW(window_, GWL_STYLE, GetWindowLongW(window_, GWL_STYLE) & ~WS_VISIBLE);
    if (visible_) InvalidateAll(window_);
}

}  // namespace ui
