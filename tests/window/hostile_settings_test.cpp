// The whole window opened and closed with hostile settings.
#include "driven.h"

#include "support/hostile_settings.h"

using namespace shell;

namespace {

constexpr std::uint64_t kRounds = 40;

void CheckWindow(const Driven& window) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    REQUIRE(GetWindowPlacement(window.form->window(), &placement));
    if (placement.showCmd == SW_SHOWNORMAL) {
        REQUIRE(MonitorFromWindow(window.form->window(), MONITOR_DEFAULTTONULL) != nullptr);
        const RECT& place = placement.rcNormalPosition;
        REQUIRE((place.right > place.left && place.bottom > place.top));
    }
    for (const Control which : {Control::ListView1_0, Control::ListView1_1, Control::lvStartUp, Control::lvService}) {
        const ui::ListView list = window.list(which);
        REQUIRE(list.column_count() > 0);
        for (int column = 0; column < list.column_count(); ++column)
            REQUIRE((list.column_width(column) >= 0 && list.column_width(column) <= 0x7FFF));
        REQUIRE(window.font(which).lfHeight != 0);
    }
    REQUIRE(window.list(Control::ListView2).count() > 0);
}

}  // namespace

TEST_CASE("the window opens where it is seen with hostile settings, and saving loses no stranger's line") {
    const SettingsFile file;
    hostile::Run("window settings", kRounds, [&file](hostile::Source& source, std::uint64_t round) {
        // Every third time with what the window has saved itself.
        if (round % 3 != 2) file.write(hostile::SettingsContent(source));
        const std::wstring strangers = hostile::StrangersLines(SettingsPath());
        CheckWindow(Driven());
        REQUIRE(hostile::StrangersLines(SettingsPath()) == strangers);
    });
}
