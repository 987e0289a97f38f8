#include "win/text.h"
#include "support/show.h"
#include "win/date_text.h"
#include "win/size_text.h"
#include "win/system_text.h"

TEST_CASE("a date names its era from the era's first day on") {
    const std::pair<SYSTEMTIME, const wchar_t*> cases[] = {
        {{2019, 5, 3, 1, 0, 0, 0, 0}, L"2019(令和1)/05/01 (水) 00:00:00"},
        {{2019, 4, 2, 30, 23, 59, 59, 999}, L"2019(平成31)/04/30 (火) 23:59:59"},
        {{1989, 1, 0, 8, 0, 0, 0, 0}, L"1989(平成1)/01/08 (日) 00:00:00"},
        {{1989, 1, 6, 7, 12, 0, 0, 0}, L"1989(昭和64)/01/07 (土) 12:00:00"},
        {{1926, 12, 6, 25, 1, 2, 3, 0}, L"1926(昭和1)/12/25 (土) 01:02:03"},
        {{1868, 1, 6, 25, 1, 2, 3, 0}, L"1868(明治1)/01/25 (土) 01:02:03"},
        {{1601, 1, 1, 1, 0, 0, 0, 0}, L"1601(西暦1601)/01/01 (月) 00:00:00"},
    };
    for (const auto& [time, text] : cases)
        CHECK(win::DateTimeWithEra(time) == text);
}

TEST_CASE("size texts change their unit exactly at its first byte, and totals count beyond 32 bits") {
    CHECK(win::SizeText(1023) == L"1023 Byte");
    CHECK(win::SizeText(1024) == L"1.00 KB");
    CHECK(win::SizeText(1048575) == L"1024.00 KB");
    CHECK(win::SizeText(1179648) == L"1.13 MB");  // 1.125: the half goes up
    CHECK(win::SizeText(1073741824) == L"1.00 GB");
    CHECK(win::SizeText(0xFFFFFFFFFFFFFFFF) == L"17179869184.00 GB");
    CHECK(win::MegabyteText(0xFFFFFFFF) == L"4194304.00MB");
    CHECK(win::SizeSortKey(L"4194304.00MB") == L"4194304.00");
    CHECK(win::ToText(static_cast<long long>(INT64_MIN)) == L"-9223372036854775808");
    CHECK((win::ToInteger(L" -12x") == -12 && win::ToInteger(L"99999999999") == INT_MAX));
    CHECK(win::FileTotalText(5'000'000'000, 0x200000000) == L"ファイル総数 5000000000個 (8.00 GB)");
}

TEST_CASE("text comes back from the system's code page as it was given, or visibly not") {
    const std::wstring kept = L"開放①髙～", others[] = {L"caf\u00e9", L"Foo\u2122", L"\u00c5ngstr\u00f6m", L"\u2075"};
    CHECK(win::FromAnsi(win::ToAnsi(kept)) == kept);
    for (const std::wstring& text : others) {
        const std::wstring back = win::FromAnsi(win::ToAnsi(text));
        CHECK((back == text || back.find(L'?') != back.npos));
    }
}
