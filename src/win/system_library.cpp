#include "win/system_library.h"

#include "win/folders.h"

namespace win {

Module LoadSystemLibrary(const wchar_t* name) {
    // With this flag the libraries that it imports are searched in its own folder and not in the program's, on systems
    // too where nothing else can forbid that.
    return Module(LoadLibraryExW((SystemDirectory() + L"\\" + name).c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
}

}  // namespace win
