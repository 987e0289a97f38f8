#include "shell/pages.h"

#include "shell/activity.h"
#include "ui/control.h"

#include <algorithm>
#include <iterator>

namespace shell {
namespace {

constexpr PageRow kPages[] = {
    {Control::ListView1_0, MenuArray::mnuPopItem, {0, 7}},
    {Control::ListView1_1, MenuArray::mnuPopItem, {1, 7}},
    {Control::ListView2},
    {Control::lvStartUp, MenuArray::mnuStartItem, {2, 4}},
    {Control::lvService, MenuArray::mnuServiceItem, {3, 5}},
    {Control::lvProcess},
    {Control::lvRestore},
};

constexpr UINT kFullRowSelectAndGridLines = LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES;  // 33
constexpr UINT kDoubleBuffer = 0x00010000;  // no flicker while the border is dragged; Windows 2000 ignores it

constexpr bool InOrder() {
    for (std::size_t i = 0; i < std::size(kPages); ++i) {
        if (kPages[i].list != Element(Control::ListView1_0, static_cast<int>(i))) return false;
    }
    return true;
}
static_assert(InOrder(), "one row for each list, in the order of the controls");

}  // namespace

std::span<const PageRow> AllPageRows() { return kPages; }

Pages::Pages(const win::OsVersion& os, const programs::ScanOptions& scan_options, const std::wstring& user_sid,
             const win::BackupFolder& backup)
    : scan_{scan_options, user_sid, backup, {}, {}, {}},
      control_panel_(os),
      startup_(backup),
      all_{&programs_, &updates_, &control_panel_, &startup_, &services_, &processes_, &restore_} {
    static_assert(std::size(kPages) == kCount && kCount <= Activity::kPages, "a page for each row");
}

// The style of the first list goes to all of them.
void Pages::set_list_styles() const {
    const LRESULT first = SendMessageW(programs_.list().window(), LVM_GETEXTENDEDLISTVIEWSTYLE, 0, 0);
    const LPARAM style = static_cast<LPARAM>(first) | static_cast<LPARAM>(kFullRowSelectAndGridLines);
    for (const ui::Page* page : all_) {
        if (page->list().window()) SendMessageW(page->list().window(), LVM_SETEXTENDEDLISTVIEWSTYLE, 0, style);
    }
}

// Not from the start: the first painting has nothing to flicker with, and is spared a picture of the list's size.
void Pages::buffer() const {
    SendMessageW(programs_.list().window(), LVM_SETEXTENDEDLISTVIEWSTYLE, kDoubleBuffer, kDoubleBuffer);
    set_list_styles();
    // Not every system draws both to the same pixel.
    ui::InvalidateAll(programs_.list().window());
}

void Pages::restore_column_widths(const Settings& settings, CreationPhase phase) const {
    for (const PageRow& row : kPages) {
        if (PhaseOf(RowOf(row.list)) != phase) continue;
        const ui::ListView& list = of(row.list)->list();
        for (int column = 0; column < row.columns.count; ++column) {
            const int designed = list.column_width(column);
            const int width = settings.number(ColumnKey(column + 1, row.columns.suffix), designed);
            if (width != designed) list.set_column_width(column, width);
        }
    }
}

void Pages::save_column_widths(const Settings& settings) const {
    for (const PageRow& row : kPages) {
        const ui::ListView& list = of(row.list)->list();
        if (!list.window()) continue;
        for (int column = 0; column < row.columns.count; ++column)
            settings.write(ColumnKey(column + 1, row.columns.suffix), list.column_width(column));
    }
}

ui::Page* Pages::of_window(HWND window) const {
    const auto it = std::ranges::find_if(all_, [=](const ui::Page* page) { return page->list().window() == window; });
    return window && it != all_.end() ? *it : nullptr;
}

ui::Page* Pages::of(Control list) const {
    const auto* row = std::ranges::find(kPages, list, &PageRow::list);
    return row == std::end(kPages) ? nullptr : all_[static_cast<std::size_t>(row - kPages)];
}

int Pages::index_of(const ui::Page& page) const {
    return static_cast<int>(std::ranges::find(all_, &page) - all_.begin());
}

}  // namespace shell
