// Running a stored uninstall command and waiting for it.
#pragma once

#include "ui/host.h"
#include "win/process.h"

#include <string>
#include <string_view>

namespace programs {

struct CommandProgram {
    std::wstring path;          // of an existing file, its full path; empty when the command names none
    std::wstring arguments;     // what follows it
    std::wstring command_line;  // the whole of it
};

// Which file a stored command means. A quoted beginning is the program, with ".exe" where it has no extension.
// Otherwise, of the beginnings that end at a blank or at the end and have an executable extension of their own, the
// first that exists is, and when none exists nothing is. Only a command without any such extension is completed with
// ".exe" and looked for, the longest beginning first, but for pieces of its path. "/" is as good as "\". A command
// that names no file as it stands is taken with its environment variables expanded.
CommandProgram FindCommandProgram(std::wstring_view command);

// Starts the command as stored, minimised with focus; a batch file is handed to the system's cmd.exe. Where that needs
// elevation the system's own prompt is shown. An empty process when there is no program, when it cannot be started, or
// when the user refuses.
win::StartedProcess StartUninstallCommand(const std::wstring& command, HWND owner);

// Returns when `process` has ended; messages are processed meanwhile, every 10 milliseconds. What that process has
// started itself is not waited for.
void WaitForProcessEnd(HANDLE process, ui::Host& host);

}  // namespace programs
