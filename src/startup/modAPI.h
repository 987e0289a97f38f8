// Starting programs and the file properties of the shell.
#pragma once

#include "win/process.h"

#include <string>

namespace startup {

// The modeless properties sheet of a file or folder (ShellExecuteExW, "properties"). Nothing is shown on failure.
void ShowFileProperties(const std::wstring& path);

// Starts `program` with a command line made of its name in double quotes and, behind a blank, the arguments as they
// are. A name without folder means a program of the system's folders. The identifier of the process, 0 on failure.
DWORD RunProgram(const std::wstring& program, const std::wstring& arguments, win::WindowStyle style);

}  // namespace startup
