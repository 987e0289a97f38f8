// The temporary folder, and which folder may be taken for one.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tools {

// GetTempPathW into 256 characters: ends with a backslash, empty when it does not fit.
std::wstring GetTempFolder();

// The real path, without "\\?\", of a folder whose contents may be deleted. Nothing for a folder that is missing, that
// is no absolute path with a drive letter, that lies on the network, is a drive root, or that is or contains the
// Windows, system, Program Files or Common Files folder, any user's profile, Desktop, Documents, application data and
// the like, or this program's own folder. Folders are compared by what they are and not by their names, so that no
// link, short name or substituted drive hides one.
std::optional<std::wstring> FolderToEmpty(std::wstring_view folder);

// The same for the temporary folder. Windows makes a relative TEMP absolute with the current folder: nothing for that.
std::optional<std::wstring> TempFolderToEmpty();

}  // namespace tools
