#include "shell/mod_ini.h"

#include "support/test_folder.h"
#include "win/system_text.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

using shell::Settings;

TEST_CASE("settings are read back as written, and nothing else in the file is lost") {
    TestFolder folder(L"Qorvenix shell test");
    const std::wstring file =
        folder.make_file(L"設定 setting.ini", "[Other]\r\nKeep=1\r\n[Morlet]\r\nMine=by hand\r\n");
    Settings(file).write("Mem", L"C:\\開放 プログラム\\a b.exe");
    Settings(file).write("X", -120);
    const Settings settings(file);
    CHECK(settings.text("Mem") == L"C:\\開放 プログラム\\a b.exe");
    CHECK(settings.number("X", 7) == -120);
    CHECK(settings.text("Mine") == L"by hand");
    CHECK(GetPrivateProfileIntW(L"Other", L"Keep", 0, file.c_str()) == 1);
}

// Read as the profile functions read each key on its own, from files that users and other programs have edited.
TEST_CASE("a section read in one go holds what the single reads give") {
    TestFolder folder(L"Qorvenix shell test");
    std::string lines = "; a remark\r\n[Other]\r\nX=1\r\n\r\n[morlet]\r\n";
    const char* const values[] = {"12",  " 7 ",        "-1",          "0x10",    "010",       "12abc",
                                  "abc", "",           "\"5\"",       "'6'",     "\"\"a\"\"", "4294967295",
                                  "a=b", "\"",         "99999999999", "C:\\a b", "＝表能",    "+3",
                                  "- 4", "1 ; remark", "\"a\" /b",    "\t9"};
    int count = 0;
    for (const char* value : values) {
        lines += "  key" + std::to_string(count) + (count % 2 == 0 ? " = " : "=") + std::string(value) + "\r\n";
        ++count;
    }
    const std::wstring file = folder.make_file(
        L"edited.ini", lines + "KEY0=99\r\nno value\r\n=nameless\r\n[morlet]\r\nlate=1\r\n" + std::string(40'000, ';') +
                           "\r\nfar=8\r\n" + std::string(70'000, 'k') + "=1\r\nlast=2");
    const Settings settings(file);
    std::vector<std::string> keys = {"late", "far", "last", "no value", "nothing"};
    for (int each = 0; each < count; ++each)
        keys.push_back("Key" + std::to_string(each));
    for (const std::string& key : keys) {
        CAPTURE(key);
        char text[1024] = {};
        const std::string path = win::ToAnsi(file);
        GetPrivateProfileStringA("Morlet", key.c_str(), "", text, 1024, path.c_str());
        CHECK(win::ToAnsi(settings.text(key)) == text);
        CHECK(settings.number(key, 77) ==
              static_cast<int>(GetPrivateProfileIntA("Morlet", key.c_str(), 77, path.c_str())));
    }
}

TEST_CASE("what is no number is 0, what is missing the default") {
    TestFolder folder(L"Qorvenix shell test");
    const std::wstring file =
        folder.make_file(L"setting.ini", "[Morlet]\r\nIcon=1\r\nStripe=-1\r\nSysCom=yes\r\nW=\r\nFont=\r\nLong=" +
                                             std::string(1500, 'x'));
    const Settings settings(file);
    CHECK(settings.number("Icon", 0) == 1);
    CHECK(settings.number("Stripe", 0) == -1);
    CHECK(settings.number("SysCom", 5) == 0);
    CHECK(settings.number("W", 12000) == 12000);
    CHECK(settings.number("H", 8000) == 8000);
    CHECK(settings.text("Font").empty());
    CHECK(settings.text("Long").size() == 1023);
    CHECK(settings.text("None").empty());
}

TEST_CASE("a folder of the file's name, and a file that is no settings file, give defaults without a word") {
    TestFolder folder(L"Qorvenix shell test");
    const Settings blocked(folder.make_folder(L"taken.ini"));
    blocked.write("X", 5);
    CHECK(blocked.number("X", 9) == 9);

    std::string noise(100'000, '\0');
    for (std::size_t i = 0; i < noise.size(); ++i)
        noise[i] = static_cast<char>(i * 7919 >> 3);
    const std::wstring binary = folder.make_file(L"binary.ini", noise);
    CHECK(Settings(binary).number("X", 9) == 9);
    CHECK(Settings(binary).text("Mem").empty());
}

TEST_CASE("twips and pixels do not drift at any resolution") {
    for (const int dpi : {96, 120, 144, 168, 192, 240}) {
        CAPTURE(dpi);
        for (int pixels = -2000; pixels <= 4000; ++pixels) {
            REQUIRE(shell::PixelsFromTwips(shell::TwipsFromPixels(pixels, dpi), dpi) == pixels);
        }
    }
    CHECK(shell::PixelsFromTwips(12000, 96) == 800);
    CHECK(shell::TwipsFromPixels(-100, 96) == -1500);
    CHECK(shell::PixelsFromTwips(2147483647, 192) > 0);
    CHECK(shell::ColumnKey(7, 0) == "7Col0");
}
