#include "shell/csv_export.h"

#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "win/system_text.h"

#include <doctest/doctest.h>

TEST_CASE("a list becomes lines in the system's code page, numbers bare, everything else in quotes and whole") {
    constexpr ui::Column kColumns[] = {{L"名前", 80}, {L"値", 80}, {L"計算用", 0}};
    const TestList shown(kColumns);
    TestHost host;
    const std::wstring longest(20'000, L'長');
    shown.add_row({L"123", L"123", L"00001.50"});
    shown.add_row({L"say \"hi\"", L"1.50MB", {}});
    shown.add_row({L"絵文字\U0001F600é", L"-1", L"20090301"});
    shown.add_row({L"二行\r\n目,", longest, L"\""});
    CHECK(shell::CsvOf(shown.list, host) == win::ToAnsi(L"名前,値,計算用\r\n"
                                                        L"\"123\",123,00001.50\r\n"
                                                        L"\"say \"hi\"\",\"1.50MB\",\"\"\r\n"
                                                        L"\"絵文字\U0001F600é\",-1,20090301\r\n"
                                                        L"\"二行\r\n目,\",\"" +
                                                        longest + L"\",\"\"\"\r\n"));
}

TEST_CASE("the file is written whole or stays as it was") {
    TestFolder folder(L"Qorvenix shell test");
    const std::wstring file = folder.own(L"一覧.csv");
    REQUIRE(shell::WriteWholeFile(file, "old"));
    REQUIRE(shell::WriteWholeFile(file, "new bytes"));
    {
        const win::File held(CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        CHECK_FALSE(shell::WriteWholeFile(file, "lost"));
    }
    CHECK(ContentOf(file) == "new bytes");
    CHECK_FALSE(shell::WriteWholeFile(folder.make_folder(L"taken.csv"), "lost"));
    CHECK_FALSE(shell::WriteWholeFile(folder.path() + L"\\missing\\a.csv", "lost"));
    // Nothing unfinished is left behind.
    WIN32_FIND_DATAW entry = {};
    CHECK_FALSE(win::FindHandle(FindFirstFileW((folder.path() + L"\\*.tmp").c_str(), &entry)));
}
