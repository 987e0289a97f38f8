// Opening files, folders and URLs with their associated programs.
#pragma once

#include "win/platform.h"

#include <string_view>

namespace programs {

// ShellExecuteExW with the default verb; returns its result. An empty `directory` stands for the folder of `file`; a
// text that holds only a NUL gives the shell none. A name without folder is opened from the system's folders or not
// at all (FALSE, ERROR_FILE_NOT_FOUND). No message is shown.
bool OpenWithShell(HWND window, std::wstring_view file, std::wstring_view parameters, std::wstring_view directory);

}  // namespace programs
