#include "shell/mod_ini.h"

#include "support/show.h"
#include "support/test_folder.h"

using shell::Settings;

TEST_CASE("settings are read back as written from any folder, and what cannot be read has its default") {
    TestFolder folder(L"Qorvenix shell test");
    const std::wstring file = folder.make_file(L"設定 setting.ini", "[Morlet]\r\nLong=" + std::string(1500, 'x'));
    Settings(file).write("Mem", L"C:\\開放 プログラム\\a b.exe");
    Settings(file).write("Y", -120);
    const Settings settings(file);
    CHECK(settings.text("Mem") == L"C:\\開放 プログラム\\a b.exe");
    CHECK(settings.number("Y", 7) == -120);
    CHECK(settings.number("X", 7) == 7);
    CHECK(settings.text("Long").size() == 1023);
    const Settings blocked(folder.make_folder(L"taken.ini"));
    blocked.write("X", 5);
    CHECK(blocked.number("X", 9) == 9);
}

TEST_CASE("twips and pixels do not drift at any resolution") {
    for (int pixels = -2000; pixels <= 4000; pixels += 7)
        for (const int dpi : {96, 120, 144, 192})
            REQUIRE(shell::PixelsFromTwips(shell::TwipsFromPixels(pixels, dpi), dpi) == pixels);
    CHECK(shell::TwipsFromPixels(-100, 96) == -1500);
    CHECK(shell::PixelsFromTwips(2147483647, 192) > 0);
}
