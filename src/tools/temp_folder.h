// The temporary folder, and which folder may be taken for one.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tools {

// GetTempPathW into 256 characters: ends with a backslash, empty when it does not fit.
std::wstring GetTempFolder();

// Whether `folder`, or anything above the place where a program runs or a user keeps things, would be emptied with
// it: a drive root, or a path that equals or contains one of `kept`. Compared as text without regard to case;
// all of them are extended paths ("\\?\C:\...") without a backslash at the end.
bool MustBeKept(std::wstring_view folder, std::span<const std::wstring> kept);

// The real path, without "\\?\", of a folder whose contents may be deleted. Nothing for a folder that is missing, no
// absolute path with a drive letter, on the network, a link, a drive root, or that equals or contains the Windows,
// system, Program Files or a profile folder, Desktop, Documents and the like, application data or this program's own
// folder.
std::optional<std::wstring> FolderToEmpty(std::wstring_view folder);

// The same for the temporary folder. Windows makes a relative TEMP absolute with the current folder: nothing for that.
std::optional<std::wstring> TempFolderToEmpty();

}  // namespace tools
