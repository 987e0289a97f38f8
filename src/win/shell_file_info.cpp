#include "win/shell_file_info.h"

#include "win/text.h"

namespace win {
namespace {

// "/:\a" has the shape of a path on a drive, but names none; Wine's shell reads where nothing is.
bool NamesNoDrive(const std::wstring& path) { return path.size() > 1 && path[1] == L':' && !IsDriveLetter(path[0]); }

}  // namespace

bool GetShellFileInfo(const std::wstring& path, UINT flags, SHFILEINFOW& info) {
    // For an empty path the shell would describe the current folder.
    if (path.empty() || NamesNoDrive(path)) return false;
    return SHGetFileInfoW(path.c_str(), 0, &info, sizeof info, flags) != 0;
}

}  // namespace win
