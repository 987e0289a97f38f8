// Files dropped on a window.
#pragma once

#include "win/platform.h"

#include <string>

namespace ui {

// Lets the window receive WM_DROPFILES, also from programs with fewer rights than ours (ChangeWindowMessageFilter, from
// Vista on, looked up at run time).
void AllowDrops(HWND window);

// The first of the files that a WM_DROPFILES message carries in its WPARAM; empty for none. The handle is given back to
// the system.
std::wstring TakeFirstDroppedFile(WPARAM drop);

}  // namespace ui
