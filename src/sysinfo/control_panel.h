// The Control Panel list: what of the catalogue this machine has, and opening it.
#pragma once

#include "ui/host.h"
#include "ui/list_view.h"
#include "win/os_version.h"

#include <string>
#include <string_view>

namespace sysinfo {

// The columns of ListView2.
struct ControlPanelColumn {
    enum Index : int { Name, Comment, Path };
};

// In the order of ControlPanelColumn.
inline constexpr ui::Column kControlPanelColumns[] = {{L"名前", 200}, {L"コメント", 400}, {L"パス", 260}};

// The folders that the catalogue's files lie in, without a backslash at the end.
struct ControlPanelFolders {
    std::wstring system;
    std::wstring programs;
    std::wstring windows;
};

// The machine's own ones as this edition sees them; "Program Files" is that of its own kind of programs
// (CSIDL_PROGRAM_FILES).
ControlPanelFolders QueryControlPanelFolders();

// Fills ListView2 anew; `images`, its small image list, is emptied first and belongs to the caller. The
// catalogue depends on the version of Windows.
void FillControlPanelList(const ui::ListView& list, HIMAGELIST images, win::VersionNumber os_number,
                          const ControlPanelFolders& folders, ui::Host& host);

// Appends the small icon `index` of `file` (ExtractIconExW) to `images` and returns the new number of images; 0 when
// there is no such icon. A name without folder is searched for as Windows does.
int AddIconFromFile(HIMAGELIST images, const std::wstring& file, int index);

// Opens a row by its path cell: programs and consoles themselves, everything else through control.exe. Nothing is said
// when it fails.
void OpenControlPanelRow(HWND owner, std::wstring_view path);

}  // namespace sysinfo
