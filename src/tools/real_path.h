// Where files and folders really lie, behind links, junctions, short names and substituted drives.
#pragma once

#include "win/handle.h"

#include <string>
#include <string_view>

namespace tools {

// A path for calls that take it as it stands: beyond 260 characters, names that end in a dot or a blank. `path` is
// absolute with a drive letter.
std::wstring Extended(std::wstring_view path);

// The path of a file or folder with everything resolved, "\\?\C:\..."; empty when it cannot be opened or has no such
// path. GetFinalPathNameByHandleW; before Windows Vista, which brought that function, the name of the opened object.
std::wstring RealPath(const std::wstring& path);

// Whether `real` is what RealPath gives for something that really lies at `path`: the same, but that Wine leaves out
// dots and blanks at the end of names.
bool LiesAt(std::wstring_view real, std::wstring_view path);

// A folder opened so that nobody can rename, remove or replace it, provided that it really lies at `path`, which is an
// extended path; empty when it does not, or cannot be opened.
win::File OpenRealFolder(const std::wstring& path);

// Deletes the file or the empty folder that really lies at `path`, an extended path. What is deleted is what has been
// opened and looked at, whatever the path leads to by then. Read-only ones go too, but for a file with more names: its
// attributes are one, and the other names may lie elsewhere. False where it stays.
bool DeleteRealEntry(const std::wstring& path);

// What FindFirstFileW tells of an entry: a junction, a mount point or a symbolic link, that is, an entry that leads
// elsewhere. Other files with a reparse tag (deduplicated, kept in a cloud) are ordinary files. Wine marks a link to a
// folder with the tag 0.
bool IsLink(const WIN32_FIND_DATAW& entry);

}  // namespace tools
