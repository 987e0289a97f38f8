// A one-line label that may lead somewhere: shortened with an ellipsis, and while it is a link underlined, reachable
// by the Tab key and pointed at with the hand pointer.
#pragma once

#include "win/platform.h"

namespace ui {

inline constexpr wchar_t kLinkClass[] = L"Qorvenix.Label";

// Registers the window class. A click on the text with the left button, Enter and Space reach the parent as WM_COMMAND
// with STN_CLICKED, whether or not the label is a link. Beside its text the label lets the pointer through.
void RegisterLinkLabel(HINSTANCE instance);

// Switches the link look and the tab stop.
void SetLink(HWND label, bool is_link);
bool IsLink(HWND label);

}  // namespace ui
