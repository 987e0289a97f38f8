// The whole window opened and closed with hostile settings.
#include "shell/frmMain.h"

#include "support/hostile_settings.h"
#include "support/test_folder.h"
#include "ui/control.h"

#include <memory>

using namespace shell;

namespace {

constexpr std::uint64_t kRounds = 40;

constexpr Control kLists[] = {Control::ListView1_0, Control::ListView1_1, Control::lvStartUp, Control::lvService};

std::wstring SettingsPath() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::wstring(path).substr(0, std::wstring(path).rfind(L'\\')) + L"\\setting.ini";
}

void Write(const std::wstring& path, std::string_view bytes) {
    const win::File file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

void CheckWindow(HWND window) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    REQUIRE(GetWindowPlacement(window, &placement));
    if (placement.showCmd == SW_SHOWNORMAL) {
        REQUIRE(MonitorFromWindow(window, MONITOR_DEFAULTTONULL) != nullptr);
        const RECT& place = placement.rcNormalPosition;
        REQUIRE((place.right > place.left && place.bottom > place.top));
    }
    for (const Control which : kLists) {
        const ui::ListView list(GetDlgItem(window, IdOf(which)));
        REQUIRE(list.column_count() > 0);
        for (int column = 0; column < list.column_count(); ++column)
            REQUIRE((list.column_width(column) >= 0 && list.column_width(column) <= 0x7FFF));
        LOGFONTW font = {};
        REQUIRE(GetObjectW(reinterpret_cast<HFONT>(SendMessageW(list.window(), WM_GETFONT, 0, 0)), sizeof font, &font));
        REQUIRE(font.lfHeight != 0);
    }
}

}  // namespace

TEST_CASE("the window opens where it is seen with hostile settings, and saving loses no stranger's line") {
    const std::wstring file = SettingsPath();
    hostile::Run("window settings", kRounds, [&](hostile::Source& source, std::uint64_t round) {
        // Every third time with what the window has saved itself.
        if (round % 3 != 2) Write(file, hostile::SettingsContent(source));
        const std::string strangers = hostile::StrangersLines(file);
        const win::ComApartment apartment;
        const auto form = std::make_unique<frmMain>(GetModuleHandleW(nullptr));
        REQUIRE(form->open(L""));
        // The catalogue is the last thing that a start makes.
        const auto catalogue = [&form] { return ui::ListView(GetDlgItem(form->window(), IdOf(Control::ListView2))); };
        for (int wait = 0; wait < 500 && catalogue().count() == 0; ++wait) {
            form->pump();
            Sleep(10);
        }
        REQUIRE(catalogue().count() > 0);
        CheckWindow(form->window());
        SendMessageW(form->window(), WM_CLOSE, 0, 0);
        form->pump();
        // The end of the program is not the end of the test.
        MSG left;
        while (PeekMessageW(&left, nullptr, 0, 0, PM_REMOVE)) {
        }
        REQUIRE(hostile::StrangersLines(file) == strangers);
    });
    DeleteFileW(file.c_str());
}
