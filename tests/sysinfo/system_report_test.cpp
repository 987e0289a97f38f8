#include "sysinfo/system_report.h"

#include "support/show.h"

#include <doctest/doctest.h>

using namespace sysinfo;

TEST_CASE("The report's lines, tabs and empty lines") {
    SystemFacts facts;
    facts.os_name = L"Windows 7  64bit 6.1 Build:7601 ";
    facts.user_name = L"山田 太郎";
    facts.computer_name = L"PC";
    facts.ip_address = L"192.168.0.3";
    facts.resolution = Resolution(1280, 1024);
    facts.display_inches = L"17";
    facts.keyboard_type = L"日本語キーボード";
    facts.keyboard_subtype = L"106キーボード";
    facts.function_keys = L"12";
    facts.recycle_bin = L"ファイル総数 12個 (3.45 MB)";
    facts.explorer_version = L"8.0.7601.17514";
    facts.controls_version = L"5.82.7601.17514";
    CHECK(SystemReportText(facts) ==
          L"\r\n"
          L"OS\t\tWindows 7  64bit 6.1 Build:7601 \r\n"
          L"\r\n"
          L"ユーザー名\t山田 太郎\r\n"
          L"コンピュータ名\tPC\r\n"
          L"IPアドレス\t\t192.168.0.3\r\n"
          L"\r\n"
          L"画面の解像度\t1280 x 1024 ピクセル\r\n"
          L"ディスプレイサイズ\t17 インチ\r\n"
          L"\r\n"
          L"キーボードの種類\t日本語キーボード\r\n"
          L"サブタイプ\t\t106キーボード\r\n"
          L"ファンクションキー数\t12\r\n"
          L"\r\n"
          L"ごみ箱\t\tファイル総数 12個 (3.45 MB)\r\n"
          L"\r\n"
          L"[バージョン情報]\r\n"
          L"Internet Explorer\t8.0.7601.17514\r\n"
          L"ComCtl32.dll\t5.82.7601.17514");
}

TEST_CASE("The display size is rounded twice, halves to the even number") {
    CHECK(DisplayInches(1920, 1080, 96, 96) == L"23");    // 20 and 11 (11.25)
    CHECK(DisplayInches(1280, 1024, 96, 96) == L"17");    // 13 and 11 (10.67)
    CHECK(DisplayInches(1008, 96, 96, 96) == L"10");      // 10 (10.5) and 1
    CHECK(DisplayInches(1009, 96, 96, 96) == L"11");      // 11 (10.51) and 1
    CHECK(DisplayInches(3840, 2160, 144, 192) == L"29");  // 27 (26.67) and 11 (11.25)
    CHECK(DisplayInches(65535, 65535, 1, 1) == L"92680");
    CHECK(DisplayInches(0, 0, 96, 96) == L"");
    CHECK(DisplayInches(1920, 1080, 0, 0) == L"");
}

TEST_CASE("Keyboards have names only within the known numbers") {
    CHECK(KeyboardTypeName(1) == L"IBM(R) PC/XT(R)または互換性のある(83キー)キーボード");
    CHECK(KeyboardTypeName(7) == L"日本語キーボード");
    CHECK(KeyboardSubtypeName(2) == L"106キーボード");
    CHECK(KeyboardSubtypeName(4) == L"IBM-5576 001キーボード");
    for (const int type : {-1, 0, 8, 0x7FFFFFFF})
        CHECK(KeyboardTypeName(type) == L"");
    for (const int subtype : {-1, 5, 7, -0x7FFFFFFF - 1})
        CHECK(KeyboardSubtypeName(subtype) == L"");
}
