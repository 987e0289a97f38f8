// The reading and writing of setting.ini, whatever is in the file.
#include "support/hostile_settings.h"

#include "shell/mod_ini.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "win/system_text.h"

using shell::Settings;

namespace {

constexpr std::uint64_t kRounds = 400;
constexpr std::size_t kLongestNumber = 19;  // digits; what a longer one becomes is nobody's concern

}  // namespace

TEST_CASE("hostile settings are read as Windows reads them, and writing loses no stranger's line") {
    TestFolder folder(L"QorvenixHostileSettings");
    const std::wstring file = folder.own(L"setting.ini");
    const std::string ansi_file = win::ToAnsi(file);
    hostile::Run("settings", kRounds, [&](hostile::Source& source, std::uint64_t) {
        folder.make_file(L"setting.ini", hostile::SettingsContent(source));
        const std::wstring strangers = hostile::StrangersLines(file);
        const Settings settings(file);
        const auto dpi = static_cast<int>(96 + 24 * source.below(5));
        for (const char* key : hostile::kSettingKeys) {
            const std::wstring text = settings.text(key);
            const int number = settings.number(key, 7);
            REQUIRE((text.size() < 1024 && text.find(L'\0') == text.npos));
            char alone[1024] = {};
            // Under Wine a line without "=" hides the later lines of its key.
            if (GetPrivateProfileStringA("Morlet", key, "", alone, sizeof alone, ansi_file.c_str()) != 0) {
                REQUIRE(text == win::FromAnsi(alone));
                const auto alone_number = static_cast<int>(GetPrivateProfileIntA("Morlet", key, 7, ansi_file.c_str()));
                REQUIRE((number == alone_number || text.size() > kLongestNumber));
            }
            const int pixels = shell::PixelsFromTwips(number, dpi);
            REQUIRE(shell::PixelsFromTwips(shell::TwipsFromPixels(pixels, dpi), dpi) == pixels);
        }
        const int number = static_cast<int>(source.word());
        const std::string key = source.pick(hostile::kSettingKeys);
        settings.write(key, number);
        REQUIRE(Settings(file).number(key, 7) == number);
        REQUIRE(hostile::StrangersLines(file) == strangers);
    });
}
