// Functions newer than Windows 2000, looked up at run time in libraries of the system folder only, so that a
// library planted beside the program is never loaded.
#pragma once

#include "win/handle.h"

namespace win {

// The library `name` ("pdh.dll") of the system folder; empty when it is not there. Freed by the owner.
Module LoadSystemLibrary(const wchar_t* name);

// A function of a loaded library, or null. `Function` is the function's pointer type.
template <class Function>
Function FindFunction(HMODULE library, const char* name) {
    if (!library) return nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

}  // namespace win
