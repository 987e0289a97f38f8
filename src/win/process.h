// Starting programs.
#pragma once

#include "win/handle.h"

#include <string>
#include <string_view>

namespace win {

// How the first window of a started program appears: the show command in STARTUPINFO.
enum class WindowStyle : WORD {
    Normal = SW_SHOWNORMAL,
    MinimisedWithFocus = SW_SHOWMINIMIZED,
};

struct StartedProcess {
    Handle process;  // empty when the start failed; GetLastError tells why
    DWORD id = 0;    // 0 where the system does not tell
};

// CreateProcessW with a command line as it stands. `application` is the full path of the program to run, so that
// nothing planted along an unquoted path can run instead; empty leaves the search to Windows. This program's error mode
// (no "There is no disk in the drive") is not passed on.
StartedProcess StartProcess(const std::wstring& application, std::wstring command_line, WindowStyle style);

// A program of Windows' own ("regedit.exe"), found by FindSystemFile and started with `command_line` as it stands.
StartedProcess StartSystemProgram(std::wstring_view name, std::wstring command_line, WindowStyle style);

// Starts a program after the system's elevation prompt (ShellExecuteExW, "runas"). An empty process when the user
// refuses.
StartedProcess StartElevated(HWND owner, const std::wstring& application, const std::wstring& arguments,
                             WindowStyle style);

// Waits until the process ends, a message arrives or the time is over, whichever is first (MsgWaitForMultipleObjects).
// Without a process (null) only for the latter two.
void WaitForMessage(HANDLE process, DWORD milliseconds);

}  // namespace win
