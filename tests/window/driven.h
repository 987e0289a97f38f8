// The whole window, driven as a user drives it: posted mouse and key messages, read back from the real controls.
#pragma once

#include "shell/frmMain.h"

#include "programs/uninstall_key.h"
#include "startup/startup_scan.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_key.h"
#include "ui/control.h"
#include "win/folders.h"
#include "win/text.h"

#include <deque>

namespace shell {

// A settings file for the length of a test; the program looks for it beside the executable.
struct SettingsFile {
    explicit SettingsFile(std::string_view lines = {}) { write("[Morlet]\r\n" + std::string(lines)); }
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;
    ~SettingsFile() { DeleteFileW(path.c_str()); }

    void write(const std::string& bytes) const { MakeFile(path, FILE_ATTRIBUTE_NORMAL, bytes); }
    int number(const std::string& key) const { return Settings(path).number(key, -999); }

    const std::wstring path = win::ApplicationFolder() + L"\\setting.ini";
};

// Long lists of different lengths, whose rows are told from each other by the numbers in all their texts and come in
// another order than theirs. Every fourth program and update is a component of the system.
struct Seeded {
    static constexpr int kPrograms = 40, kUpdates = 28, kStartups = 24;

    Seeded() {
        const auto machine = programs::FindUninstallKey(programs::UninstallPlace::Machine, {});
        for (int row = 0; row < kPrograms + kUpdates; ++row) {
            const bool update = row >= kPrograms;
            const std::wstring name = Name(row);
            const auto& key = keys.emplace_back(HKEY_LOCAL_MACHINE,
                                                machine.path + (update ? L"\\KB" : L"\\Qvx") + win::ToText(100 + row));
            key.set_text({}, L"DisplayName", name);
            key.set_text({}, L"Publisher", (update ? L"Microsoft " : L"by ") + name);
            key.set_text({}, L"UninstallString", L"C:\\none\\" + name);
            key.set_text({}, L"DisplayIcon", L"C:\\windows\\regedit.exe");
            key.set_text({}, L"HelpLink", L"https://help.example/" + name);
            key.set_text({}, L"HelpTelephone", L"03 " + name);
            key.set_number({}, L"EstimatedSize", static_cast<DWORD>(win::ToInteger(name.substr(6))) * 1024);
            key.set_number({}, L"SystemComponent", row % 4 == 0);
        }
        for (int row = 0; row < kStartups; ++row)
            run.set_text({}, Name(row), L"C:\\none\\" + Name(row));
    }
    static std::wstring Name(int row) { return L"model " + win::PadZeros(static_cast<unsigned>(row) * 77 % 1000, 3); }

    std::deque<TestKey> keys;
    TestKey run{HKEY_CURRENT_USER, startup::kRunKey};
};

// What the tabs show, in the order of the strip.
inline constexpr Control kViews[] = {Control::ListView1_0, Control::ListView1_1, Control::lvStartUp, Control::lvService,
                                     Control::ListView2,   Control::lvRestore,   Control::txtSys};
inline constexpr int kTabs = 7, kInformation = 6;

inline RECT BoundsOf(HWND window) {
    RECT bounds = {};
    GetWindowRect(window, &bounds);
    return bounds;
}

// Answers every box of this program with Cancel while it lives.
struct BoxesCancelled {
    BoxesCancelled() : timer(SetTimer(nullptr, 0, 20, &Cancel)) {}
    BoxesCancelled(const BoxesCancelled&) = delete;
    BoxesCancelled& operator=(const BoxesCancelled&) = delete;
    ~BoxesCancelled() { KillTimer(nullptr, timer); }

    static void CALLBACK Cancel(HWND, UINT, UINT_PTR, DWORD) {
        for (HWND box = nullptr; (box = FindWindowExW(nullptr, box, L"#32770", nullptr)) != nullptr;)
            if (GetWindowThreadProcessId(box, nullptr) == GetCurrentThreadId())
                PostMessageW(box, WM_COMMAND, IDCANCEL, 0);
    }
    const UINT_PTR timer;
};

class Driven {
public:
    explicit Driven(const wchar_t* argument = L"") {
        REQUIRE(form.open(argument));
        // The catalogue is the last thing that a start makes.
        for (int wait = 0; wait < 2000 && list(Control::ListView2).count() == 0; ++wait) {
            form.pump();
            Sleep(10);
        }
    }
    Driven(const Driven&) = delete;
    Driven& operator=(const Driven&) = delete;
    ~Driven() {
        if (window()) SendMessageW(window(), WM_CLOSE, 0, 0);
        form.pump();
        // The end of the program is not the end of the test.
        MSG left;
        while (PeekMessageW(&left, nullptr, 0, 0, PM_REMOVE)) {
        }
    }

    HWND window() const { return form.window(); }
    void pump() const { form.pump(); }
    HWND at(Control control) const { return GetDlgItem(window(), IdOf(control)); }
    std::wstring text(Control control) const { return ui::TextOf(at(control)); }
    bool shown(Control control) const { return IsWindowVisible(at(control)) != FALSE; }
    std::wstring status() const { return text(Control::st); }
    ui::ListView list(Control control) const { return ui::ListView(at(control)); }
    int tab() const { return static_cast<int>(SendMessageW(at(Control::tb), TCM_GETCURSEL, 0, 0)); }
    std::wstring count(Control control) const { return win::ToText(list(control).count()) + L" 個の項目"; }
    // The names of the rows that a test has put there.
    std::vector<std::wstring> names(Control control) const {
        std::vector<std::wstring> all;
        for (int row = 0; row < list(control).count(); ++row)
            all.push_back(list(control).cell(row, 0));
        std::erase_if(all, [](const std::wstring& name) { return !name.starts_with(L"model "); });
        return all;
    }
    // The tool tip of a control, empty for none.
    std::wstring tip(Control control) const {
        HWND tips = nullptr;
        do {
            tips = FindWindowExW(nullptr, tips, TOOLTIPS_CLASSW, nullptr);
        } while (tips && GetWindow(tips, GW_OWNER) != window());
        wchar_t found[1024] = {};
        TTTOOLINFOW tool = {
            TTTOOLINFOW_V2_SIZE, 0, window(), reinterpret_cast<UINT_PTR>(at(control)), {}, {}, found, 0, nullptr};
        SendMessageW(tips, TTM_GETTEXTW, 0, reinterpret_cast<LPARAM>(&tool));
        return found;
    }

    // The middle of a tab, in pixels of the strip.
    LPARAM middle(int place) const {
        RECT area = {};
        SendMessageW(at(Control::tb), TCM_GETITEMRECT, static_cast<WPARAM>(place), reinterpret_cast<LPARAM>(&area));
        return MAKELPARAM((area.left + area.right) / 2, (area.top + area.bottom) / 2);
    }
    // Presses and releases the left button on a tab; the window sees it with the next pump.
    void post_click(int place) const {
        PostMessageW(at(Control::tb), WM_LBUTTONDOWN, MK_LBUTTON, middle(place));
        PostMessageW(at(Control::tb), WM_LBUTTONUP, 0, middle(place));
    }
    void click(int place) const {
        post_click(place);
        pump();
    }
    void post_wheel(int delta) const {
        PostMessageW(at(Control::ListView1_0), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(delta)), 0);
    }
    void click_header(Control which, int column) const {
        NMLISTVIEW click = {};
        click.hdr = {at(which), static_cast<UINT_PTR>(IdOf(which)), static_cast<UINT>(LVN_COLUMNCLICK)};
        click.iSubItem = column;
        SendMessageW(window(), WM_NOTIFY, click.hdr.idFrom, reinterpret_cast<LPARAM>(&click));
    }
    void command(MenuArray array, int index) const {
        SendMessageW(window(), WM_COMMAND, static_cast<WPARAM>(CommandId(array, index)), 0);
    }

    const win::ComApartment apartment;
    mutable frmMain form{GetModuleHandleW(nullptr)};
};

}  // namespace shell
