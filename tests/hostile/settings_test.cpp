// The reading and writing of setting.ini, whatever is in the file.
#include "support/hostile_settings.h"

#include "shell/mod_ini.h"
#include "support/show.h"
#include "support/test_folder.h"

namespace {

constexpr std::uint64_t kRounds = 400;

}  // namespace

TEST_CASE("hostile settings are read within their bounds, and writing loses no stranger's line") {
    TestFolder folder(L"QorvenixHostileSettings");
    const std::wstring file = folder.path() + L"\\setting.ini";
    hostile::Run("settings", kRounds, [&](hostile::Source& source, std::uint64_t) {
        folder.make_file(L"setting.ini", hostile::SettingsContent(source));
        const std::string strangers = hostile::StrangersLines(file);
        const shell::Settings settings(file);
        const auto dpi = static_cast<int>(96 + 24 * source.below(5));
        for (const char* key : hostile::kSettingKeys) {
            const std::wstring text = settings.text(key);
            REQUIRE((text.size() < 1024 && text.find(L'\0') == text.npos));
            const int pixels = shell::PixelsFromTwips(settings.number(key, 7), dpi);
            REQUIRE(shell::PixelsFromTwips(shell::TwipsFromPixels(pixels, dpi), dpi) == pixels);
        }
        const int number = static_cast<int>(source.word());
        const std::string key = source.pick(hostile::kSettingKeys);
        settings.write(key, number);
        REQUIRE(settings.number(key, 7) == number);
        REQUIRE(hostile::StrangersLines(file) == strangers);
    });
}
