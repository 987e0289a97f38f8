// The whole window, driven as a user drives it: posted mouse and key messages, read back from the real controls.
#pragma once

#include "shell/frmMain.h"

#include "ui/control.h"
#include "win/com_ptr.h"

#include <doctest/doctest.h>

#include <memory>
#include <string>

namespace shell {

inline std::wstring SettingsPath() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring program(path);
    return program.substr(0, program.rfind(L'\\')) + L"\\setting.ini";
}

// A settings file for the length of a test; the program looks for it beside the executable.
struct SettingsFile {
    explicit SettingsFile(std::string_view lines = {}) { write("[Morlet]\r\n" + std::string(lines)); }
    SettingsFile(const SettingsFile&) = delete;
    SettingsFile& operator=(const SettingsFile&) = delete;
    ~SettingsFile() { DeleteFileW(SettingsPath().c_str()); }

    void write(const std::string& bytes) const {
        const win::File file(CreateFileW(SettingsPath().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written = 0;
        WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    }
    int number(const char* key) const { return Settings(SettingsPath()).number(key, -999); }
};

class Driven {
public:
    explicit Driven(const wchar_t* argument = L"") : form(std::make_unique<frmMain>(GetModuleHandleW(nullptr))) {
        REQUIRE(form->open(argument));
        // The catalogue is the last thing that a start makes.
        for (int wait = 0; wait < 500 && list(Control::ListView2).count() == 0; ++wait) {
            form->pump();
            Sleep(10);
        }
    }
    Driven(const Driven&) = delete;
    Driven& operator=(const Driven&) = delete;
    ~Driven() {
        if (form->window()) SendMessageW(form->window(), WM_CLOSE, 0, 0);
        form->pump();
        form.reset();
        // The end of the program is not the end of the test.
        MSG left;
        while (PeekMessageW(&left, nullptr, 0, 0, PM_REMOVE)) {
        }
    }

    HWND at(Control control) const { return GetDlgItem(form->window(), IdOf(control)); }
    std::wstring text(Control control) const { return ui::TextOf(at(control)); }
    bool shown(Control control) const { return IsWindowVisible(at(control)) != FALSE; }
    std::wstring status() const { return text(Control::st); }
    ui::ListView list(Control control) const { return ui::ListView(at(control)); }
    int tab() const { return static_cast<int>(SendMessageW(at(Control::tb), TCM_GETCURSEL, 0, 0)); }
    int tabs() const { return static_cast<int>(SendMessageW(at(Control::tb), TCM_GETITEMCOUNT, 0, 0)); }
    // Of the font that the control has been given.
    LOGFONTW font(Control control) const {
        LOGFONTW look = {};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(at(control), WM_GETFONT, 0, 0)), sizeof look, &look);
        return look;
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
        form->pump();
    }
    void wheel(int delta, Control over = Control::tb) const {
        PostMessageW(at(over), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(delta)), 0);
        form->pump();
    }
    void command(MenuArray array, int index) const {
        SendMessageW(form->window(), WM_COMMAND, static_cast<WPARAM>(CommandId(array, index)), 0);
    }
    bool open() const { return form->window() && IsWindow(form->window()); }

    const win::ComApartment apartment;
    std::unique_ptr<frmMain> form;
};

}  // namespace shell
