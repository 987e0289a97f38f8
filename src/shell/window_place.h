// Where the window stands and in which state, kept in the settings from one run to the next.
#pragma once

#include "shell/layout.h"
#include "shell/mod_ini.h"
#include "win/platform.h"

namespace shell {

// The show command for the stored state, as it is: a program closed while minimised starts minimised.
int StoredShowCommand(const Settings& settings);

// The least size of the window in pixels; never larger than the screen.
POINT LeastSize(const LayoutMetrics& metrics);

// The bounds of the window in its normal state, in pixels; the designed ones where none are stored. Windows asks for
// the least size only of a window that exists already.
Rectangle StoredBounds(const Settings& settings, const LayoutMetrics& metrics);

// A window of which nothing would be seen is moved onto the nearest monitor, judged by what Windows has made of the
// stored size.
void KeepOnMonitor(HWND window);

// The state, and in the normal one the bounds; a minimised or maximised window leaves those of its last normal state.
void SaveWindow(HWND window, const Settings& settings, int dpi);

}  // namespace shell
