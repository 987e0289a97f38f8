#include "ui/list_view.h"

#include "support/show.h"
#include "support/test_list.h"

namespace {

struct Shown {
    static constexpr ui::Column kColumns[] = {{L"名前", 150}, {L"サイズ", 150, LVCFMT_RIGHT}, {L"パス", 900}};
    const TestList shown{kColumns};
    const ui::ListView list = shown.list;
};

}  // namespace

TEST_CASE_FIXTURE(Shown, "sorting is stable, ignores case, and takes tag and selection along") {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"b1", L"B"}, {L"a1", L"a"}, {L"b2", L"b"}, {L"none", L""}, {L"a2", L"A"}};
    for (LPARAM tag = 100; const auto& [name, value] : rows)
        list.set_cell(list.add_row(name, tag++), 1, value);
    list.select(2);
    list.sort(1, ui::SortOrder::Ascending);
    CHECK(shown.column(0) == std::vector<std::wstring>{L"none", L"a1", L"a2", L"b1", L"b2"});
    CHECK(list.selected() == 4);
    CHECK(list.item_data(4) == 102);
    list.sort(1, ui::SortOrder::Descending);
    CHECK(shown.column(0) == std::vector<std::wstring>{L"b1", L"b2", L"a1", L"a2", L"none"});
    CHECK(list.cell(list.selected(), 0) == L"b2");
}

TEST_CASE_FIXTURE(Shown, "cells of any length come back whole") {
    for (const std::size_t length : {0u, 258u, 259u, 260u, 1039u, 1040u, 5000u}) {
        const std::wstring text(length, L'字');
        CHECK(list.cell(list.add_row(text), 0) == text);
    }
    CHECK((list.cell(99, 0).empty() && list.cell(-1, 0).empty()));
}

TEST_CASE_FIXTURE(Shown, "a cell is cut by its column, by either edge of the list and by a larger font") {
    const win::Font fonts[] = {win::Font(CreateFontW(-12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"MS UI Gothic")),
                               win::Font(CreateFontW(-60, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, L"IPAGothic"))};
    const auto use = [&](const win::Font& font) {
        SendMessageW(list.window(), WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), TRUE);
    };
    using Cut = std::vector<bool>;
    const auto cut = [&](std::size_t length) {
        list.clear();
        const int row = shown.add_row(std::vector(3, std::wstring(length, L'字')));
        return Cut{list.is_cut(row, 0), list.is_cut(row, 1), list.is_cut(row, 2)};
    };
    use(fonts[0]);
    CHECK(cut(3) == Cut{false, false, false});
    CHECK(cut(15) == Cut{true, true, false});
    CHECK(cut(35) == Cut{true, true, true});  // the list ends before the text
    SendMessageW(list.window(), LVM_SCROLL, 160, 0);
    CHECK(cut(3) == Cut{true, false, false});
    CHECK(cut(35) == Cut{true, true, false});
    SendMessageW(list.window(), LVM_SCROLL, static_cast<WPARAM>(-160), 0);
    use(fonts[1]);
    CHECK(cut(3) == Cut{true, true, false});
}
