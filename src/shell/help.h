// What the items of the Help menu do, each without a word where there is nothing to open.
#pragma once

#include "win/platform.h"

#include <string>

namespace shell {

// HelpItem. `application_folder` without a backslash at the end. The version box is modal to `window`.
void RunHelpItem(int item, HWND window, const std::wstring& application_folder);

}  // namespace shell
