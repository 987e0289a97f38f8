#include "win/system_library.h"

#include "win/folders.h"

namespace win {

Module LoadSystemLibrary(const wchar_t* name) {
    return Module(LoadLibraryW((SystemDirectory() + L"\\" + name).c_str()));
}

}  // namespace win
