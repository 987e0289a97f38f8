// The keys that the window itself takes, and where the focus goes.
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
                focus_view_wanted_ = true;
                strip_.step(back ? -1 : +1);
            } else {
                walk_focus(back);
            }
            return true;
        }
        case VK_F5:
            mnuFileItem_Click(FileItem::Refresh);
            return true;
        case VK_RETURN:
            return press_enter(GetFocus(), IsHeld(message));
        case VK_PRIOR:
        case VK_NEXT:
            if (!control_key || IsKeyDown(VK_MENU)) return false;
            focus_view_wanted_ = true;
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

void frmMain::walk_focus(bool back) {
    HWND present = GetFocus();
    while (present && GetParent(present) != window_)
        present = GetParent(present);  // out of the box in cb
    const HWND next = GetNextDlgTabItem(window_, present, back);
    if (!next) return;
    SendMessageW(window_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
    SetFocus(next);
    if (next == control(Control::txtMemPath)) SendMessageW(next, EM_SETSEL, 0, -1);
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

// What the tab shows; the strip where that could not be filled and is hidden.
void frmMain::focus_view() {
    const HWND view = control(RowOf(shown_tab_).view);
    last_focus_ = ui::IsShown(view) ? view : control(Control::tb);
    if (GetActiveWindow() == window_) SetFocus(last_focus_);
}

// The frame itself has got the focus, where keys would go nowhere.
void frmMain::give_focus_on() {
    if (last_focus_ && ui::IsShown(last_focus_) && IsWindowEnabled(last_focus_)) {
        SetFocus(last_focus_);
    } else {
        focus_view();
        // A list that is hidden until it is filled takes the focus then.
        if (activity_.running()) focus_view_wanted_ = true;
    }
}

// A control that has just been hidden must not keep the focus: keys would go nowhere.
void frmMain::keep_focus() {
    const HWND focus = GetFocus();
    const bool lost = !focus || (IsChild(window_, focus) && !IsWindowVisible(focus));
    if (lost) focus_view();
}

}  // namespace shell
