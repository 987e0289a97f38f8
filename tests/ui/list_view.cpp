#include "ui/list_view.h"

#include "support/test_list.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

namespace {

constexpr ui::Column kColumns[] = {{L"名前", 80}, {L"値", 80}};

}  // namespace

TEST_CASE("sorting is stable, ignores case, and takes tag, image and selection along") {
    const TestList shown(kColumns);
    const ui::ListView& list = shown.list;
    const struct {
        const wchar_t* name;
        const wchar_t* value;
    } rows[] = {{L"b1", L"B"}, {L"a1", L"a"}, {L"b2", L"b"}, {L"none", L""}, {L"a2", L"A"}};
    for (LPARAM tag = 100; const auto& row : rows)
        list.set_cell(list.add_row(row.name, tag++), 1, row.value);
    list.select(2);

    list.sort(1, ui::SortOrder::Ascending);
    CHECK(shown.column(0) == std::vector<std::wstring>{L"none", L"a1", L"a2", L"b1", L"b2"});
    CHECK(list.selected() == 4);
    CHECK(list.item_data(4) == 102);
    CHECK(list.item_data(0) == 103);
    list.sort(1, ui::SortOrder::Descending);
    CHECK(shown.column(0) == std::vector<std::wstring>{L"b1", L"b2", L"a1", L"a2", L"none"});
    CHECK(list.cell(list.selected(), 0) == L"b2");
    CHECK(list.item_data(list.find(0, L"a2")) == 104);
}

TEST_CASE("a fill leaves a hidden list hidden and a shown one shown") {
    const TestList shown(kColumns);
    const auto is_shown = [&] { return (GetWindowLongW(shown.list.window(), GWL_STYLE) & WS_VISIBLE) != 0; };
    for (const bool show : {false, true}) {
        ShowWindow(shown.list.window(), show ? SW_SHOW : SW_HIDE);
        { const ui::RedrawSuspender fill(shown.list); }
        CHECK(is_shown() == show);
    }
}

TEST_CASE("cells of any length come back whole, and a point outside every row is none") {
    const TestList shown(kColumns);
    for (const std::size_t length : {0u, 258u, 259u, 260u, 1039u, 1040u, 5000u}) {
        const std::wstring text(length, L'字');
        CHECK(shown.list.cell(shown.list.add_row(text), 0) == text);
    }
    CHECK(shown.list.cell(99, 0).empty());
    CHECK(shown.list.cell(-1, 0).empty());
    CHECK(shown.list.hit_test({10, 5000}).row == -1);
}

TEST_CASE("a cell is cut by its column, by either edge of the list and by a larger font") {
    constexpr ui::Column columns[] = {{L"名前", 150}, {L"サイズ", 150, LVCFMT_RIGHT}, {L"パス", 900}};
    const TestList shown(columns);
    const ui::ListView& list = shown.list;
    const auto use_font = [&](int height, const wchar_t* face) {
        static win::Font font;
        win::Font next(CreateFontW(height, 0, 0, 0, 0, 0, 0, 0, SHIFTJIS_CHARSET, 0, 0, 0, 0, face));
        SendMessageW(list.window(), WM_SETFONT, reinterpret_cast<WPARAM>(next.get()), TRUE);
        font = std::move(next);
    };
    const auto cut = [&](int row) {
        return std::vector<bool>{list.is_cut(row, 0), list.is_cut(row, 1), list.is_cut(row, 2)};
    };
    const auto add = [&](const std::wstring& text) {
        const int row = list.add_row(text);
        list.set_cell(row, 1, text);
        list.set_cell(row, 2, text);
        return row;
    };
    use_font(-12, L"MS UI Gothic");
    const int nothing = add({});
    const int little = add(L"字字字");
    const int much = add(std::wstring(15, L'字'));
    const int path = add(std::wstring(35, L'字'));
    const int endless = add(std::wstring(300, L'.'));
    using Cut = std::vector<bool>;
    CHECK(cut(nothing) == Cut{false, false, false});
    CHECK(cut(little) == Cut{false, false, false});
    CHECK(cut(much) == Cut{true, true, false});
    CHECK(cut(path) == Cut{true, true, true});  // the list ends before the text
    CHECK(cut(endless) == Cut{true, true, true});

    SendMessageW(list.window(), LVM_SCROLL, 160, 0);
    CHECK(cut(little) == Cut{true, false, false});
    CHECK(cut(path) == Cut{true, true, false});
    SendMessageW(list.window(), LVM_SCROLL, 150, 0);
    CHECK(cut(little) == Cut{true, true, true});
    SendMessageW(list.window(), LVM_SCROLL, static_cast<WPARAM>(-310), 0);
    use_font(-60, L"IPAGothic");
    CHECK(cut(little) == Cut{true, true, false});
}
