// Hours of use in one process.
#include "driven.h"

#include "support/leaks.h"
#include "support/test_key.h"

using namespace shell;

namespace {

void CALLBACK CloseBox(HWND, UINT, UINT_PTR, DWORD) {
    if (const HWND box = FindWindowW(L"#32770", L"Qorvenix")) PostMessageW(box, WM_COMMAND, IDCANCEL, 0);
}

void PressKeys(const Driven& window, std::initializer_list<int> keys) {
    for (const int key : keys)
        PostMessageW(window.form.window(), WM_KEYDOWN, static_cast<WPARAM>(key), 0);
}

// What a user does all day, but for the restore points: under Wine each binding of a WMI moniker keeps two handles.
void UseEverything(const Driven& window) {
    const HWND form = window.form.window();
    constexpr Control kLists[] = {Control::ListView1_0, Control::ListView1_1, Control::lvStartUp, Control::lvService,
                                  Control::ListView2};
    window.click(6);
    for (int tab = 0; tab < 5; ++tab) {
        window.click(tab);
        const ui::ListView list = window.list(kLists[tab]);
        list.select(0);
        SendMessageW(list.window(), WM_KEYDOWN, VK_END, 0);
        PostMessageW(list.window(), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(30, 40));
        PostMessageW(list.window(), WM_RBUTTONUP, 0, MAKELPARAM(30, 40));
        PressKeys(window, {VK_DOWN, VK_ESCAPE, VK_ESCAPE});
        window.form.pump();
        NMLISTVIEW header = {};
        header.hdr = {list.window(), static_cast<UINT_PTR>(IdOf(kLists[tab])), static_cast<UINT>(LVN_COLUMNCLICK)};
        SendMessageW(form, WM_NOTIFY, header.hdr.idFrom, reinterpret_cast<LPARAM>(&header));
        window.command(MenuArray::mnuFileItem, FileItem::Refresh);
        for (const int item : {ViewItem::Icons, ViewItem::Stripes, ViewItem::SystemComponents})
            window.command(MenuArray::mnuViewItem, item);
    }
    for (const wchar_t letter : {L'f', L'v', L'd', L'r', L'h'}) {
        PressKeys(window, {VK_DOWN, VK_ESCAPE, VK_ESCAPE});
        SendMessageW(form, WM_SYSCOMMAND, SC_KEYMENU, letter);
    }
    window.command(MenuArray::mnuHelpItem, HelpItem::Version);
    for (const int width : {900, 700, 800})
        SetWindowPos(form, nullptr, 0, 0, width, width / 2, SWP_NOMOVE | SWP_NOZORDER);
    window.form.pump();
}

}  // namespace

TEST_CASE("hours of use cost neither handles nor windows nor memory") {
    const SettingsFile settings;
    const TestKey program(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Qvx");
    program.set_text({}, L"DisplayName", L"見本");
    program.set_text({}, L"DisplayIcon", L"C:\\windows\\regedit.exe");
    program.set_text({}, L"UninstallString", L"C:\\none.exe");
    const Driven window;
    const UINT_PTR timer = SetTimer(nullptr, 0, 20, &CloseBox);
    CheckHoldsOnToNothing(3, 6, 200, [&window] { UseEverything(window); });
    KillTimer(nullptr, timer);
}
