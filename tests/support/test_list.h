// A real report list in a window of its own.
#pragma once

#include "ui/list_view.h"
#include "win/handle.h"

#include <span>
#include <string>
#include <vector>

class TestList {
public:
    explicit TestList(std::span<const ui::Column> columns) {
        INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES};
        InitCommonControlsEx(&classes);
        // Not shown: without a window manager Wine waits two seconds for a window to disappear.
        frame_.reset(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 640, 480, nullptr, nullptr, nullptr,
                                     nullptr));
        list = ui::ListView(CreateWindowExW(
            0, WC_LISTVIEWW, L"",
            WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_SHAREIMAGELISTS, 0, 0, 620,
            440, frame_.get(), nullptr, nullptr, nullptr));
        list.add_columns(columns, 96);
    }

    int add_row(const std::vector<std::wstring>& cells) const {
        const int row = list.add_row(cells[0]);
        for (std::size_t column = 1; column < cells.size(); ++column)
            list.set_cell(row, static_cast<int>(column), cells[column]);
        return row;
    }

    // All rows with all their cells.
    std::vector<std::vector<std::wstring>> rows() const {
        std::vector<std::vector<std::wstring>> all;
        for (int row = 0; row < list.count(); ++row) {
            auto& cells = all.emplace_back();
            for (int column = 0; column < list.column_count(); ++column)
                cells.push_back(list.cell(row, column));
        }
        return all;
    }

    std::vector<std::wstring> column(int index) const {
        std::vector<std::wstring> cells;
        for (const auto& row : rows())
            cells.push_back(row[static_cast<std::size_t>(index)]);
        return cells;
    }

    // The number of a row's image.
    int image(int row) const {
        LVITEMW item = {};
        item.mask = LVIF_IMAGE;
        item.iItem = row;
        SendMessageW(list.window(), LVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&item));
        return item.iImage;
    }

    ui::ListView list;

private:
    win::Window frame_;
};
