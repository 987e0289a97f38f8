#include "shell/focus.h"

#include "ui/control.h"

#include <utility>

namespace shell {
namespace {

// Whoever walks into a one-line text box mostly types over its text.
void SelectAllOfLine(HWND control) {
    if ((GetWindowLongW(control, GWL_STYLE) & ES_MULTILINE) == 0) ui::SelectAllText(control);
}

}  // namespace

void Focus::begin(HWND window, HWND strip) {
    window_ = window;
    strip_ = strip;
}

void Focus::to_view() {
    last_ = view_ && ui::IsShown(view_) ? view_ : strip_;
    if (GetActiveWindow() == window_) SetFocus(last_);
}

void Focus::give_wanted() {
    if (std::exchange(view_wanted_, false)) to_view();
}

void Focus::walk(bool back) const {
    HWND present = GetFocus();
    while (present && GetParent(present) != window_)
        present = GetParent(present);  // out of the box in cb
    const HWND next = GetNextDlgTabItem(window_, present, back);
    if (!next) return;
    SendMessageW(window_, WM_CHANGEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS), 0);
    SetFocus(next);
    SelectAllOfLine(next);
}

void Focus::window_left() {
    if (IsChild(window_, GetFocus())) last_ = GetFocus();
}

void Focus::window_entered(bool working) {
    if (last_ && ui::IsShown(last_) && IsWindowEnabled(last_)) {
        SetFocus(last_);
        return;
    }
    to_view();
    if (working) want_view();
}

void Focus::leave_hidden() {
    const HWND focus = GetFocus();
    if (!focus || (IsChild(window_, focus) && !IsWindowVisible(focus))) to_view();
}

}  // namespace shell
