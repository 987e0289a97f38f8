// The system's dialogs: message boxes and the file dialogs. All are modal to `owner`.
#pragma once

#include "ui/host.h"

#include <string>
#include <string_view>

namespace ui {

// A message box with OK and Cancel; closing it is Cancel. `icon` is an MB_ICON… constant or 0.
Answer AskOkCancel(HWND owner, std::wstring_view text, std::wstring_view title, UINT icon);

// An information box with one OK button.
void Inform(HWND owner, std::wstring_view text, std::wstring_view title);

struct FileFilter {
    const wchar_t* description;  // as the dialog shows it
    const wchar_t* pattern;      // "*.exe"
};

// The path of an existing file; empty when cancelled. The current folder stays.
std::wstring ChooseFileToOpen(HWND owner, const wchar_t* title, const FileFilter& filter);

// The path of a file to write; empty when cancelled. Asks before overwriting, adds `extension` ("csv") to a name
// without one, keeps the current folder.
std::wstring ChooseFileToSave(HWND owner, const wchar_t* title, const FileFilter& filter, const wchar_t* extension);

}  // namespace ui
