// Hours of use in one process.
#include "driven.h"

#include "support/leaks.h"
#include "support/test_key.h"

using namespace shell;

namespace {

// What a user does all day, but for the restore points: under Wine each binding of a WMI moniker keeps two handles.
void UseEverything(const Driven& window) {
    const HWND form = window.window();
    const auto look_into_menu = [form] {
        for (const int key : {VK_DOWN, VK_ESCAPE, VK_ESCAPE})
            PostMessageW(form, WM_KEYDOWN, static_cast<WPARAM>(key), 0);
    };
    window.click(kInformation);
    for (int tab = 0; tab < 5; ++tab) {
        window.click(tab);
        const ui::ListView list = window.list(kViews[tab]);
        list.select(0);
        SendMessageW(list.window(), WM_KEYDOWN, VK_END, 0);
        PostMessageW(list.window(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(30, 40));
        PostMessageW(list.window(), WM_RBUTTONUP, 0, MAKELPARAM(30, 40));
        look_into_menu();
        window.pump();
        window.click_header(kViews[tab], 0);
        window.command(MenuArray::mnuFileItem, FileItem::Refresh);
        for (const int item : {ViewItem::Icons, ViewItem::Stripes, ViewItem::SystemComponents})
            window.command(MenuArray::mnuViewItem, item);
    }
    for (const wchar_t letter : {L'f', L'v', L'd', L'r', L'h'}) {
        look_into_menu();
        SendMessageW(form, WM_SYSCOMMAND, SC_KEYMENU, letter);
    }
    window.command(MenuArray::mnuHelpItem, HelpItem::Version);
    for (const int width : {900, 700, 800})
        SetWindowPos(form, nullptr, 0, 0, width, width / 2, SWP_NOMOVE | SWP_NOZORDER);
    window.pump();
}

}  // namespace

TEST_CASE("hours of use cost neither handles nor windows nor memory") {
    const SettingsFile settings;
    const TestKey program(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Qvx");
    program.set_text({}, L"DisplayName", L"見本");
    program.set_text({}, L"DisplayIcon", L"C:\\windows\\regedit.exe");
    program.set_text({}, L"UninstallString", L"C:\\none.exe");
    const Driven window;
    const BoxesCancelled cancelled;
    CheckHoldsOnToNothing(2, 5, 200, [&window] { UseEverything(window); });
}
