#include "programs/uninstall_command.h"

#include "startup/command_path.h"
#include "win/folders.h"
#include "win/system_text.h"
#include "win/text.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

namespace programs {
namespace {

constexpr DWORD kPollMilliseconds = 10;

constexpr DWORD kElevationRequired = 740;  // from Vista on

constexpr std::wstring_view kBlanks = L" \t";
constexpr std::wstring_view kSeparators = L"\\/";
constexpr std::wstring_view kInNoName = L"\"<>|*?\t";
constexpr std::wstring_view kExtendedPrefix = L"\\\\?\\";

constexpr std::wstring_view kExecutable[] = {L"exe", L"com", L"bat", L"cmd", L"msi", L"scr", L"cpl"};
constexpr std::wstring_view kBatch[] = {L"bat", L"cmd"};

std::wstring_view Trim(std::wstring_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

bool IsFullPath(std::wstring_view path) {
    if (startup::IsSharePath(path)) return true;
    return path.size() > 2 && path[1] == L':' && kSeparators.find(path[2]) != kSeparators.npos;
}

std::wstring_view Extension(std::wstring_view path) {
    path = path.substr(path.find_last_of(kSeparators) + 1);
    const std::size_t dot = path.rfind(L'.');
    return dot == path.npos ? std::wstring_view() : path.substr(dot + 1);
}

bool HasExtension(std::wstring_view path, std::span<const std::wstring_view> extensions) {
    return std::ranges::find(extensions, win::LowerCase(Extension(path))) != extensions.end();
}

// The full path of the file that `name` is, empty for none. A name without folder is looked up in the system's folders
// only, a relative path is never taken.
std::wstring FindFile(std::wstring_view name) {
    // Longer paths exist for none of the functions that start programs.
    if (name.empty() || name.size() >= MAX_PATH) return {};
    if (!IsFullPath(name)) return win::FindSystemFile(name);
    std::wstring path(name);
    std::ranges::replace(path, L'/', L'\\');
    return win::IsFile(path) ? path : std::wstring();
}

std::wstring FindCompleted(std::wstring_view name) { return FindFile(std::wstring(name) + L".exe"); }

// How far an unquoted command can be the name of a file: up to a character that is in none, a colon but a drive's, or
// a separator behind a blank, because no folder's name ends in one.
std::size_t LengthOfName(std::wstring_view command) {
    const std::size_t start = command.starts_with(kExtendedPrefix) ? kExtendedPrefix.size() : 0;
    for (std::size_t at = start; at < command.size(); ++at) {
        const wchar_t each = command[at];
        const bool after_blank = at > 0 && command[at - 1] == L' ' && kSeparators.find(each) != kSeparators.npos;
        if (kInNoName.find(each) != kInNoName.npos || (each == L':' && at != start + 1) || after_blank) return at;
    }
    return command.size();
}

// The beginnings that may name the program, the shortest first. A name without folder is one word.
std::vector<std::wstring_view> Beginnings(std::wstring_view command) {
    const std::size_t length = LengthOfName(command);
    std::vector<std::wstring_view> all;
    for (std::size_t end = 1; end <= length; ++end) {
        if (end < command.size() && kBlanks.find(command[end]) == kBlanks.npos) continue;
        const std::wstring_view name = command.substr(0, end);
        const bool words = name.find_first_of(kBlanks) != name.npos;
        if (Trim(name).size() < end || (words && name.find_first_of(kSeparators) == name.npos)) continue;
        all.push_back(name);
    }
    return all;
}

CommandProgram Found(std::wstring_view command, std::size_t end, std::wstring path) {
    return {std::move(path), std::wstring(Trim(command.substr(std::min(end, command.size())))), std::wstring(command)};
}

CommandProgram FindQuoted(std::wstring_view command) {
    const std::size_t close = std::min(command.find(L'"', 1), command.size());
    const std::wstring_view name = Trim(command.substr(1, close - 1));
    std::wstring path = FindFile(name);
    if (path.empty() && Extension(name).empty()) path = FindCompleted(name);
    return Found(command, close + 1, std::move(path));
}

CommandProgram FindUnquoted(std::wstring_view command) {
    const std::vector<std::wstring_view> beginnings = Beginnings(command);
    bool has_extension = false;
    for (const std::wstring_view name : beginnings) {
        if (!HasExtension(name, kExecutable)) continue;
        has_extension = true;
        std::wstring path = FindFile(name);
        if (!path.empty()) return Found(command, name.size(), std::move(path));
    }
    if (has_extension) return {};
    // A shorter beginning than the last folder is the piece of a path: nobody means "C:\Program.exe" by
    // "C:\Program Files\App\remove".
    const std::wstring_view longest = command.substr(0, LengthOfName(command));
    const std::size_t folder = longest.find_last_of(kSeparators);
    for (std::size_t left = beginnings.size(); left > 0; --left) {
        const std::wstring_view name = beginnings[left - 1];
        if (folder != longest.npos && name.size() <= folder) break;
        std::wstring path = FindCompleted(name);
        if (!path.empty()) return Found(command, name.size(), std::move(path));
        if (IsFullPath(name) && PathIsDirectoryW(std::wstring(name).c_str())) break;
    }
    return {};
}

CommandProgram FindAsItStands(std::wstring_view command) {
    return command.starts_with(L"\"") ? FindQuoted(command) : FindUnquoted(command);
}

CommandProgram FindExpanded(std::wstring_view command) {
    const std::wstring expanded = win::ExpandVariables(std::wstring(command));
    CommandProgram program = FindAsItStands(expanded);
    // Variables among the arguments alone are the program's own affair.
    const std::size_t named = expanded.size() - program.arguments.size();
    if (!command.starts_with(expanded.substr(0, named))) return program;
    return Found(command, named, std::move(program.path));
}

// cmd.exe, which Windows starts for a batch file, would read an unquoted path anew. Its option /s takes away the outer
// quotes and nothing else; /d keeps programs out that are registered to run with every cmd.exe.
CommandProgram ForCommandInterpreter(const CommandProgram& batch) {
    const std::wstring blank = batch.arguments.empty() ? L"" : L" ";
    const std::wstring arguments = L"/d /s /c \"\"" + batch.path + L"\"" + blank + batch.arguments + L"\"";
    return {win::FindSystemFile(L"cmd.exe"), arguments, L"cmd.exe " + arguments};
}

}  // namespace

CommandProgram FindCommandProgram(std::wstring_view command) {
    command = Trim(command);
    CommandProgram program = FindAsItStands(command);
    if (program.path.empty() && win::Contains(command, L"%")) program = FindExpanded(command);
    if (program.path.empty()) return {};
    return program;
}

win::StartedProcess StartUninstallCommand(const std::wstring& command, HWND owner) {
    CommandProgram program = FindCommandProgram(command);
    if (HasExtension(program.path, kBatch)) program = ForCommandInterpreter(program);
    if (program.path.empty()) return {};
    constexpr win::WindowStyle style = win::WindowStyle::MinimisedWithFocus;
    win::StartedProcess started = win::StartProcess(program.path, program.command_line, style);
    if (!started.process && GetLastError() == kElevationRequired) {
        started = win::StartElevated(owner, program.path, program.arguments, style);
    }
    return started;
}

void WaitForProcessEnd(HANDLE process, ui::Host& host) {
    // Not the exit code: a program may end with the very number that stands for "still active".
    do {
        host.pump();
        win::WaitForMessage(process, kPollMilliseconds);
    } while (WaitForSingleObject(process, 0) == WAIT_TIMEOUT);
}

}  // namespace programs
