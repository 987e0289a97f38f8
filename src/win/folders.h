// Windows' own folders and files, and the folder of this program.
#pragma once

#include <string>
#include <string_view>

namespace win {

// "C:\Windows\system32", without a backslash at the end; GetSystemDirectoryW. To the 32-bit edition on 64-bit Windows
// the file system shows the 32-bit folder under this name.
const std::wstring& SystemDirectory();

// "C:\Windows", without a backslash at the end; GetSystemWindowsDirectoryW.
const std::wstring& WindowsDirectory();

// The path of a special folder (CSIDL_…, SHGetSpecialFolderPathW); empty when there is none.
std::wstring GetSpecialFolderPath(int csidl);

// The folder of the running executable, without a backslash at the end.
std::wstring ApplicationFolder();

// Absolute, with backslashes, without "..": GetFullPathNameW, which looks at no file.
std::wstring FullPath(const std::wstring& path);

// An absolute path for calls that take it as it stands ("\\?\C:\...", "\\?\UNC\server\share\..."): beyond 260
// characters, with dots and blanks at the end of names. What is no absolute path stays.
std::wstring ExtendedPath(const std::wstring& path);

// The path without that prefix, where it then still means the same file.
std::wstring PlainPath(const std::wstring& extended);

// A file, not a folder, stands at `path`.
bool IsFile(const std::wstring& path);

// The full path of a file of Windows' own, given by its name alone ("regedit.exe"): in the system folder, then in the
// Windows folder, the order in which Windows itself looks. Empty when neither has it, and for a name with a folder or
// a drive in it. No other folder is searched, so that a file planted beside the program is never opened.
std::wstring FindSystemFile(std::wstring_view name);

}  // namespace win
