// Opening files, folders and URLs with their associated programs.
#pragma once

#include "win/platform.h"

#include <string_view>

namespace win {

// The `directory` that gives the shell none; an empty text stands for the folder of the file.
inline constexpr std::wstring_view kNoFolder(L"\0", 1);

// ShellExecuteExW with the default verb; returns its result. A name without folder is opened from the system's folders
// or not at all (FALSE, ERROR_FILE_NOT_FOUND). No message is shown.
bool OpenWithShell(HWND window, std::wstring_view file, std::wstring_view parameters, std::wstring_view directory);

}  // namespace win
