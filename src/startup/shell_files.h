// What the shell knows about files: shortcut targets, icons, descriptions.
#pragma once

#include "startup/command_path.h"
#include "win/automation.h"

#include <map>
#include <string>
#include <vector>

namespace startup {

// The target of a ".lnk" file; empty for any other file and for a shortcut without one. WScript.Shell is asked first,
// then IShellLinkW where that cannot tell or tells a file that is not there: a target must not seem gone because
// scripts are switched off, or because the script host takes paths through the ANSI code page. A missing target in the
// Program Files folder of 32-bit programs is the file in that of 64-bit programs where there is one.
std::wstring GetShortcutTarget(const std::wstring& file, FileProbe& probe);
std::wstring GetShortcutTarget(const std::wstring& file);

// The index of the file's icon in the system's image list; 0, the icon of an unknown file, when the shell has none.
int GetSystemIconIndex(const std::wstring& path);

// File descriptions as the shell's details view shows them, for the length of one fill: the columns of a folder are
// looked up once.
class FileDescriptions {
public:
    // The description of an existing file; empty when the shell has no such column.
    std::wstring describe(const std::wstring& path);

private:
    struct Folder {
        win::Object object;
        std::vector<int> columns;  // those headed "ファイルの説明"
    };
    const Folder& folder_at(const std::wstring& path);

    win::Object shell_;
    std::map<std::wstring, Folder> folders_;
};

}  // namespace startup
