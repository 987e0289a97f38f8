// What the shell says of a file or folder.
#pragma once

#include "win/platform.h"

#include <string>

namespace win {

// SHGetFileInfoW with the SHGFI_ flags `flags`. False for what the shell does not know, and for paths that it must not
// be asked about.
bool GetShellFileInfo(const std::wstring& path, UINT flags, SHFILEINFOW& info);

}  // namespace win
