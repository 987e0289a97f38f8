// The keys that the window itself takes.
#include "shell/frmMain.h"

#include "ui/control.h"

#include <utility>

namespace shell {
namespace {

bool IsKeyDown(int key) { return GetKeyState(key) < 0; }

// A message that only repeats a key that is held down.
bool IsHeld(const MSG& message) { return (message.lParam & (1 << 30)) != 0; }

}  // namespace

bool frmMain::translate(const MSG& message) {
    if (message.hwnd != window_ && !IsChild(window_, message.hwnd)) return false;
    switch (message.message) {
        case WM_MOUSEWHEEL:
            // Wherever the pointer or the focus is; only the open history scrolls by itself.
            if (SendMessageW(control(Control::cb), CB_GETDROPPEDSTATE, 0, 0)) return false;
            SendMessageW(window_, message.message, message.wParam, message.lParam);
            return true;
        case WM_KEYDOWN:
            return translate_key(message);
        case WM_KEYUP:
            return translate_key_up(message);
        case WM_SYSCHAR:
            return translate_mnemonic(message);
        default:
            return false;
    }
}

// No dialog handling: it would take Enter away from the lists, leave the Tab key to the report, and let a plain letter
// press "削除(&D)".
bool frmMain::translate_key(const MSG& message) {
    const bool control_key = IsKeyDown(VK_CONTROL);
    switch (message.wParam) {
        case VK_TAB: {
            const bool back = IsKeyDown(VK_SHIFT);
            if (control_key) {
                focus_.want_view();
                strip_.step(back ? -1 : +1);
            } else {
                focus_.walk(back);
            }
            return true;
        }
        case VK_F5:
            mnuFileItem_Click(FileItem::Refresh);
            return true;
        case L'A':  // which not every Windows takes in a box of several lines
            return control_key && !IsKeyDown(VK_MENU) && ui::SelectAllText(GetFocus());
        case VK_RETURN:
            return press_enter(GetFocus(), IsHeld(message));
        case VK_PRIOR:
        case VK_NEXT:
            if (!control_key || IsKeyDown(VK_MENU)) return false;
            focus_.want_view();
            strip_.step(message.wParam == VK_PRIOR ? -1 : +1);
            return true;
        default:
            return false;
    }
}

// On a button and in the box for registry paths, once a press. The box acts when the key is released.
bool frmMain::press_enter(HWND focus, bool held) {
    const ControlRow* row = controls_.row_of(focus);
    if (row && row->kind == ControlKind::CommandButton) {
        if (!held) SendMessageW(focus, BM_CLICK, 0, 0);
        return true;
    }
    const HWND cb = control(Control::cb);
    if (!cb || GetParent(focus) != cb || SendMessageW(cb, CB_GETDROPPEDSTATE, 0, 0)) return false;
    enter_pressed_in_cb_ = true;
    return true;
}

bool frmMain::translate_key_up(const MSG& message) {
    if (message.wParam != VK_RETURN || !std::exchange(enter_pressed_in_cb_, false)) return false;
    if (GetParent(message.hwnd) == control(Control::cb) && !activity_.running()) panel_.cb_KeyUp();
    return true;
}

// Alt with a button's letter, as far as the menu bar does not use it.
bool frmMain::translate_mnemonic(const MSG& message) {
    const auto letter =
        static_cast<wchar_t>(reinterpret_cast<LONG_PTR>(CharLowerW(reinterpret_cast<LPWSTR>(message.wParam & 0xFFFF))));
    if (letter == L'\0' || OpensMenu(letter)) return false;
    for (const Control which : {Control::cmdMenu_0, Control::cmdMenu_1}) {
        const HWND button = control(which);
        if (MnemonicOf(ui::TextOf(button)) != letter || !IsWindowVisible(button) || !IsWindowEnabled(button)) continue;
        if (IsHeld(message)) return true;
        SetFocus(button);
        SendMessageW(button, BM_CLICK, 0, 0);
        return true;
    }
    return false;
}

}  // namespace shell
