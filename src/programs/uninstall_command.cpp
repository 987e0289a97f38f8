#include "programs/uninstall_command.h"

#include "startup/path.h"
#include "win/folders.h"
#include "win/text.h"

namespace programs {
namespace {

constexpr DWORD kPollMilliseconds = 10;

constexpr DWORD kElevationRequired = 740;  // from Vista on

bool IsFullPath(std::wstring_view path) {
    if (path.starts_with(L"\\\\")) return true;
    return path.size() > 2 && path[1] == L':' && (path[2] == L'\\' || path[2] == L'/');
}

bool HasExtension(std::wstring_view path) { return !startup::ExtensionPart(startup::FileNamePart(path)).empty(); }

// The full path of the file that `name` is, empty for none.
std::wstring FindFile(const std::wstring& name) {
    if (!IsFullPath(name)) return win::FindSystemFile(name);
    return win::IsFile(name) ? name : std::wstring();
}

std::wstring FindProgram(const std::wstring& name) {
    // Longer paths exist for none of the functions that start programs.
    if (name.empty() || name.size() >= MAX_PATH) return {};
    std::wstring path = FindFile(name);
    if (path.empty() && !HasExtension(name)) path = FindFile(name + L".exe");
    return path;
}

// Whether `rest`, which begins at a blank, is the next piece of the path before it and not its arguments.
bool ContinuesPath(std::wstring_view rest) {
    const std::size_t separator = rest.find(L'\\');
    if (separator == rest.npos || separator == 0 || rest[separator - 1] == L' ') return false;
    const std::wstring_view words = rest.substr(0, separator);
    return words.find_first_of(L":\"") == words.npos && !win::Contains(words, L" /") && !win::Contains(words, L" -");
}

CommandProgram FindQuotedProgram(std::wstring_view command) {
    command.remove_prefix(1);
    const std::size_t close = command.find(L'"');
    const std::wstring_view name = win::TrimBlanks(command.substr(0, close));
    const std::wstring_view rest = close == command.npos ? std::wstring_view() : command.substr(close + 1);
    return {FindProgram(std::wstring(name)), std::wstring(win::TrimLeadingBlanks(rest))};
}

}  // namespace

CommandProgram FindCommandProgram(std::wstring_view command) {
    command = win::TrimBlanks(command);
    if (command.starts_with(L"\"")) return FindQuotedProgram(command);
    for (std::size_t end = command.size(); end != command.npos && end > 0; end = command.rfind(L' ', end - 1)) {
        const std::wstring name(win::TrimBlanks(command.substr(0, end)));
        const std::wstring_view rest = command.substr(end);
        const bool full = IsFullPath(name);
        // Nobody means the file "C:\Program" or "C:\Program.exe" by "C:\Program Files" or a path into it.
        const bool is_part = full && !HasExtension(name) && ContinuesPath(rest);
        std::wstring path = is_part ? std::wstring() : FindProgram(name);
        if (!path.empty()) return {std::move(path), std::wstring(win::TrimLeadingBlanks(rest))};
        if (full && PathIsDirectoryW(name.c_str())) return {};
    }
    return {};
}

win::StartedProcess StartUninstallCommand(const std::wstring& command, HWND owner) {
    const CommandProgram program = FindCommandProgram(command);
    if (program.path.empty()) return {};
    constexpr win::WindowStyle style = win::WindowStyle::MinimisedWithFocus;
    win::StartedProcess started = win::StartProcess(program.path, command, style);
    if (!started.process && GetLastError() == kElevationRequired) {
        started = win::StartElevated(owner, program.path, program.arguments, style);
    }
    return started;
}

void WaitForProcessEnd(HANDLE process, ui::Host& host) {
    // Not the exit code: a program may end with the very number that stands for "still active".
    do {
        host.pump();
        Sleep(kPollMilliseconds);
    } while (WaitForSingleObject(process, 0) == WAIT_TIMEOUT);
}

}  // namespace programs
