// Running a stored uninstall command and waiting for it.
#pragma once

#include "ui/host.h"
#include "win/process.h"

#include <string>
#include <string_view>

namespace programs {

struct CommandProgram {
    std::wstring path;       // of an existing file; empty when the command names none
    std::wstring arguments;  // what follows it
};

// The program that a command names: its quoted part, or else the longest leading part that is an existing file; ".exe"
// is tried where a part has no extension. A name without folder is looked up in the system's folders only, a relative
// path is never taken. Of "C:\Program Files\App\remove", a file "C:\Program.exe" is not the program.
CommandProgram FindCommandProgram(std::wstring_view command);

// Starts the command as stored, minimised with focus. Where that needs elevation the system's own prompt is shown. An
// empty process when there is no program, when it cannot be started, or when the user refuses.
win::StartedProcess StartUninstallCommand(const std::wstring& command, HWND owner);

// Returns when `process` has ended; messages are processed meanwhile, every 10 milliseconds. What that process has
// started itself is not waited for.
void WaitForProcessEnd(HANDLE process, ui::Host& host);

}  // namespace programs
