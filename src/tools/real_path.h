// Where files and folders really lie, behind links, junctions, short names and substituted drives.
#pragma once

#include "win/handle.h"

#include <string>
#include <string_view>

namespace tools {

// A path for calls that take it as it stands: beyond 260 characters, names that end in a dot or a blank. `path` is
// absolute with a drive letter.
std::wstring Extended(std::wstring_view path);

// The path of a file or folder with everything resolved, "\\?\C:\..." (GetFinalPathNameByHandleW). Before Windows
// Vista, which brought that function, only short names are resolved. Empty when it cannot be opened.
std::wstring RealPath(const std::wstring& path);

// Whether `real` is what RealPath gives for something that really lies at `path`: the same, but that Wine leaves out
// dots and blanks at the end of names.
bool LiesAt(std::wstring_view real, std::wstring_view path);

// A folder opened so that nobody can rename, remove or replace it, provided that it really lies at `path`, which is an
// extended path; empty when it does not, or cannot be opened. Before Windows Vista only the last part of the path is
// looked at.
win::File OpenRealFolder(const std::wstring& path);

// Deletes the file that really lies at `path`, an extended path; false with a link's error ERROR_CANT_ACCESS_FILE. The
// same opened file is looked at and deleted. Before Windows Vista the file is deleted without a look.
bool DeleteRealFile(const std::wstring& path);

// Whether the file at `path` has no hard links beside this name; false when it cannot be opened.
bool HasOneName(const std::wstring& path);

// What FindFirstFileW tells of an entry: a junction, a mount point or a symbolic link, that is, an entry that leads
// elsewhere. Other files with a reparse tag (deduplicated, kept in a cloud) are ordinary files. Wine marks a link to a
// folder with the tag 0.
bool IsLink(const WIN32_FIND_DATAW& entry);

// Whether links show as such on the volume of an absolute path with a drive letter. Where they do not (Wine: a link
// to a file looks like the file, and deleting it deletes what it leads to) an entry's real path has to be asked for.
bool VolumeMarksLinks(std::wstring_view path);

}  // namespace tools
