#include "shell/csv_export.h"

#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "win/system_text.h"
#include "win/text.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

namespace {

constexpr ui::Column kColumns[] = {{L"名前", 80}, {L"値", 80}, {L"計算用", 0}};

std::vector<std::wstring> FilesIn(const std::wstring& folder) {
    std::vector<std::wstring> names;
    WIN32_FIND_DATAW entry = {};
    const win::FindHandle find(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    do {
        if (entry.cFileName[0] != L'.') names.emplace_back(entry.cFileName);
    } while (FindNextFileW(find.get(), &entry));
    return names;
}

}  // namespace

TEST_CASE("a list becomes lines in the system's code page, numbers bare, everything else in quotes") {
    const TestList shown(kColumns);
    TestHost host;
    const auto add = [&shown](const wchar_t* name, const wchar_t* value, const wchar_t* key) {
        const int row = shown.list.add_row(name);
        shown.list.set_cell(row, 1, value);
        shown.list.set_cell(row, 2, key);
    };
    add(L"123", L"123", L"00001.50");
    add(L"say \"hi\"", L"1.50MB", L"");
    add(L"絵文字\U0001F600é", L"-1", L"20090301");
    add(L"二行\r\n目,", L"1.5 GB", L"\"");
    const std::wstring expected =
        L"名前,値,計算用\r\n"
        L"\"123\",123,00001.50\r\n"
        L"\"say \"hi\"\",\"1.50MB\",\"\"\r\n"
        L"\"絵文字\U0001F600é\",-1,20090301\r\n"
        L"\"二行\r\n目,\",\"1.5 GB\",\"\"\"\r\n";
    CHECK(shell::CsvOf(shown.list, host) == win::ToAnsi(expected));
    shown.list.sort(0, ui::SortOrder::Descending);
    CHECK(shell::CsvOf(shown.list, host).ends_with(win::ToAnsi(L"\"123\",123,00001.50\r\n")));
}

TEST_CASE("cells are saved whole, and ten thousand rows keep their order") {
    const TestList shown(kColumns);
    TestHost host;
    const std::wstring longest(20'000, L'長');
    {
        const ui::RedrawSuspender fill(shown.list, 10'000);
        for (int i = 0; i < 10'000; ++i)
            shown.list.set_cell(shown.list.add_row(win::ToText(i)), 1, L"x");
    }
    shown.list.set_cell(0, 1, longest);
    const std::string csv = shell::CsvOf(shown.list, host);
    CHECK(csv.find(win::ToAnsi(longest)) != csv.npos);
    CHECK(csv.ends_with("\"9999\",\"x\",\"\"\r\n"));
}

TEST_CASE("the file is written whole or stays as it was") {
    TestFolder folder(L"Qorvenix shell test");
    const std::wstring file = folder.own(L"一覧.csv");
    REQUIRE(shell::WriteWholeFile(file, "old"));
    REQUIRE(shell::WriteWholeFile(file, "new bytes"));
    CHECK(ContentOf(file) == "new bytes");
    {
        const win::File held(CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        CHECK_FALSE(shell::WriteWholeFile(file, "lost"));
    }
    CHECK(ContentOf(file) == "new bytes");
    const std::wstring taken = folder.make_folder(L"taken.csv");
    CHECK_FALSE(shell::WriteWholeFile(taken, "lost"));
    CHECK_FALSE(shell::WriteWholeFile(folder.path() + L"\\missing\\a.csv", "lost"));
    CHECK(FilesIn(folder.path()) == std::vector<std::wstring>{L"taken.csv", L"一覧.csv"});
}
