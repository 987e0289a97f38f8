#include "win/size_text.h"

#include "support/show.h"

using win::SizeText;

TEST_CASE("size texts change their unit exactly at its first byte") {
    CHECK(SizeText(0) == L"0 Byte");
    CHECK(SizeText(1023) == L"1023 Byte");
    CHECK(SizeText(1024) == L"1.00 KB");
    CHECK(SizeText(1029) == L"1.00 KB");
    CHECK(SizeText(1030) == L"1.01 KB");
    CHECK(SizeText(1048575) == L"1024.00 KB");
    CHECK(SizeText(1048576) == L"1.00 MB");
    CHECK(SizeText(131072 + 1048576) == L"1.13 MB");  // 1.125: the half goes up
    CHECK(SizeText(1073741824) == L"1.00 GB");
    CHECK(SizeText(0xFFFFFFFFFFFFFFFF) == L"17179869184.00 GB");
}

TEST_CASE("file totals count beyond 32 bits") {
    CHECK(win::FileTotalText(0, 0) == L"ファイル総数 0個 (0 Byte)");
    CHECK(win::FileTotalText(5'000'000'000, 0x200000000) == L"ファイル総数 5000000000個 (8.00 GB)");
}
