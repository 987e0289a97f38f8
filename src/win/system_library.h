// Functions newer than Windows 2000, looked up at run time in libraries of the system folder only, so that a
// library planted beside the program is never loaded.
#pragma once

#include "win/handle.h"

#include <string>

namespace win {

// "C:\Windows\system32", without a backslash at the end; GetSystemDirectoryW. For a 32-bit program on 64-bit
// Windows the file system shows the 32-bit folder under this name.
const std::wstring& SystemDirectory();

// "C:\Windows", without a backslash at the end; GetSystemWindowsDirectoryW.
const std::wstring& WindowsDirectory();

// The library `name` ("pdh.dll") of the system folder; empty when it is not there. Freed by the owner.
Module LoadSystemLibrary(const wchar_t* name);

// A function of a loaded library, or null. `Function` is the function's pointer type.
template <class Function>
Function FindFunction(HMODULE library, const char* name) {
    if (!library) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

}  // namespace win
