// Functions newer than Windows 2000, looked up at run time in libraries of the system folder only, so that a
// library planted beside the program is never loaded.
#pragma once

#include "win/handle.h"

#include <string>
#include <string_view>

namespace win {

// "C:\Windows\system32", without a backslash at the end; GetSystemDirectoryW. For a 32-bit program on 64-bit
// Windows the file system shows the 32-bit folder under this name.
const std::wstring& SystemDirectory();

// "C:\Windows", without a backslash at the end; GetSystemWindowsDirectoryW.
const std::wstring& WindowsDirectory();

// A file, not a folder, stands at `path`.
bool IsFile(const std::wstring& path);

// The full path of a file of Windows' own, given by its name alone ("regedit.exe"): in the system folder, then in the
// Windows folder, the order in which Windows itself looks. Empty when neither has it, and for a name with a folder or
// a drive in it. No other folder is searched, so that a file planted beside the program is never opened.
std::wstring FindSystemFile(std::wstring_view name);

// The library `name` ("pdh.dll") of the system folder; empty when it is not there. Freed by the owner.
Module LoadSystemLibrary(const wchar_t* name);

// A function of a loaded library, or null. `Function` is the function's pointer type.
template <class Function>
Function FindFunction(HMODULE library, const char* name) {
    if (!library) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

}  // namespace win
