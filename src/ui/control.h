// What all controls have in common.
#pragma once

#include "win/handle.h"

#include <string>
#include <string_view>
#include <vector>

namespace ui {

// The control's whole text, whatever its length.
std::wstring TextOf(HWND control);

// Whether a label or a status bar is too narrow for its text.
bool IsTextCut(HWND control);

// Sets the text only when it is another one, so that nothing flickers.
void SetText(HWND control, std::wstring_view text);

// The head of a WM_NOTIFY message. A copy, since a list's message of a key is packed and may stand at any address.
NMHDR NotificationOf(LPARAM lparam);

// The font of the system's message boxes, made anew.
win::Font CreateMessageFont();

// Whether a control is an edit control: then all of its text is selected (EM_SETSEL).
bool SelectAllText(HWND control);

// Shows the vertical scroll bar of a multi-line text box only when its text needs one.
void FitScrollBar(HWND box);

// Shows or hides a control (SetWindowPos) without giving it the focus. What is seen changes with the next painting, so
// that a control that is hidden for a moment leaves no hole.
void Show(HWND control, bool shown);
// The same, but the picture stays until the place is painted for another reason.
void SetShown(HWND control, bool shown);

// Everything of a window is to be painted with the next painting: frame, background, the windows in it.
void InvalidateAll(HWND window);

// The lines of a combo box's list.
std::vector<std::wstring> ComboItems(HWND combo);
void SetComboItems(HWND combo, const std::vector<std::wstring>& items);

// The style's own bit: true also for a control in a window that is not shown itself.
inline bool IsShown(HWND control) { return (GetWindowLongW(control, GWL_STYLE) & WS_VISIBLE) != 0; }

}  // namespace ui
