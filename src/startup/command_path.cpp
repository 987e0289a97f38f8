#include "startup/command_path.h"

#include "startup/path.h"
#include "win/folders.h"
#include "win/system_text.h"
#include "win/text.h"

#include <algorithm>
#include <vector>

namespace startup {
namespace {

// A longer Windows folder has never been searched; the limit stays.
constexpr UINT kWindowsFolderLength = 32;

std::wstring ProgramFilesFolder() {
    char folder[MAX_PATH] = {};
    SHGetSpecialFolderPathA(nullptr, folder, CSIDL_PROGRAM_FILES, FALSE);
    return win::FromAnsi(folder);
}

// That of 64-bit programs; empty on 32-bit Windows.
std::wstring NativeProgramFilesFolder() {
    wchar_t folder[MAX_PATH] = {};
    return GetEnvironmentVariableW(L"ProgramW6432", folder, MAX_PATH) < MAX_PATH ? folder : std::wstring();
}

// What a path may mean that begins with the variable of a folder of programs. A 32-bit or a 64-bit program may have
// written %ProgramFiles%; this edition's own folder comes first. Any other path means itself.
std::vector<std::wstring> Expanded(const std::wstring& path) {
    if (!path.starts_with(L"%")) return {path};
    const std::wstring native = NativeProgramFilesFolder();
    const struct {
        std::wstring_view name;  // in lower case
        std::vector<std::wstring> folders;
    } variables[] = {
        {L"%programfiles%", {ProgramFilesFolder(), native, win::GetSpecialFolderPath(CSIDL_PROGRAM_FILESX86)}},
        {L"%programw6432%", {native}},
    };
    std::vector<std::wstring> paths;
    for (const auto& variable : variables) {
        if (!win::LowerCase(path).starts_with(variable.name)) continue;
        for (const std::wstring& folder : variable.folders) {
            if (!folder.empty())
                paths.push_back(JoinPath(folder, std::wstring_view(path).substr(variable.name.size())));
        }
    }
    return paths.empty() ? std::vector{path} : paths;
}

// Empty when it does not fit.
std::wstring ShortWindowsFolder() {
    char folder[kWindowsFolderLength] = {};
    const UINT length = GetWindowsDirectoryA(folder, kWindowsFolderLength);
    return length < kWindowsFolderLength ? win::FromAnsi({folder, length}) : std::wstring();
}

// "\\server\share\" in lower case; empty for a path that is not on a share.
std::wstring ShareRoot(const std::wstring& path) {
    if (!IsSharePath(path)) return {};
    std::wstring lower = win::LowerCase(path);
    std::ranges::replace(lower, L'/', L'\\');
    const std::size_t server_end = lower.find(L'\\', 2);
    const std::size_t share_end = server_end == lower.npos ? lower.npos : lower.find(L'\\', server_end + 1);
    return lower.substr(0, share_end) + L"\\";
}

// "\\server\" of a share's root; a drive's root as it is.
std::wstring ServerRoot(const std::wstring& root) {
    return IsSharePath(root) ? root.substr(0, root.find(L'\\', 2) + 1) : root;
}

// "c:\"; empty for a path without a drive.
std::wstring DriveRoot(const std::wstring& path) {
    const std::wstring root = win::LowerCase(path.substr(0, 2)) + L"\\";
    return root.size() == 3 && root[1] == L':' && win::IsDriveLetter(root[0]) ? root : std::wstring();
}

// What is not to be asked again after a file of the share or drive `root` was not found: the server that gave no
// answer, or the share that it has not; empty where the root is there. One that refuses a look is there all the same.
std::wstring FailedRoot(const std::wstring& root) {
    if (GetFileAttributesW(root.c_str()) != INVALID_FILE_ATTRIBUTES) return {};
    const DWORD error = GetLastError();
    if (error == ERROR_ACCESS_DENIED) return {};
    return error == ERROR_BAD_NET_NAME ? root : ServerRoot(root);
}

std::wstring QuotedPart(std::wstring_view text) {
    text.remove_prefix(1);
    return std::wstring(text.substr(0, text.find(L'"')));
}

std::wstring CutBefore(const std::wstring& text, std::wstring_view argument) {
    const std::size_t at = text.find(argument);
    return at == text.npos ? text : std::wstring(win::TrimBlanks(std::wstring_view(text).substr(0, at)));
}

}  // namespace

bool IsSharePath(std::wstring_view path) {
    const auto is_separator = [](wchar_t each) { return each == L'\\' || each == L'/'; };
    return path.size() >= 2 && is_separator(path[0]) && is_separator(path[1]);
}

bool IsOnNetwork(const std::wstring& path) {
    return !ShareRoot(path).empty() || GetDriveTypeW(DriveRoot(path).c_str()) == DRIVE_REMOTE;
}

std::wstring FileProbe::network_root(const std::wstring& path) {
    const std::wstring drive = DriveRoot(path);
    if (drive.empty()) return ShareRoot(path);
    const auto [place, added] = drive_types_.try_emplace(drive);
    if (added) place->second = GetDriveTypeW(drive.c_str());
    // A mapping whose server is gone may be no drive at all.
    const bool remote = place->second == DRIVE_REMOTE || place->second == DRIVE_NO_ROOT_DIR;
    return remote ? drive : std::wstring();
}

bool FileProbe::has_failed(const std::wstring& root) const {
    return !root.empty() && (failed_roots_.contains(root) || failed_roots_.contains(ServerRoot(root)));
}

bool FileProbe::exists(const std::wstring& path) {
    const std::wstring root = network_root(path);
    if (has_failed(root)) return false;
    if (PathFileExistsW(path.c_str())) return true;
    const std::wstring failed = root.empty() ? std::wstring() : FailedRoot(root);
    if (!failed.empty()) failed_roots_.insert(failed);
    return false;
}

bool FileProbe::reachable(const std::wstring& path) {
    const std::wstring root = network_root(path);
    return root.empty() || exists(path) || !has_failed(root);
}

std::wstring ResolveCommandPath(std::wstring_view command_line, FileProbe& probe) {
    std::wstring path(command_line);
    if (path.starts_with(L"\"")) path = QuotedPart(command_line);
    if (probe.exists(path)) return path;

    const std::vector<std::wstring> meant = Expanded(path);
    for (const std::wstring& each : meant) {
        if (each != path && probe.exists(each)) return each;
        std::wstring without_arguments = CutBefore(CutBefore(each, L" /"), L" -");
        if (probe.exists(without_arguments)) return without_arguments;
    }
    path = CutBefore(CutBefore(meant.front(), L" /"), L" -");
    const std::wstring windows_folder = ShortWindowsFolder();
    const std::wstring in_windows = JoinPath(windows_folder, path);
    return !windows_folder.empty() && probe.exists(in_windows) ? in_windows : path;
}

std::wstring ResolveCommandPath(std::wstring_view command_line) {
    FileProbe probe;
    return ResolveCommandPath(command_line, probe);
}

}  // namespace startup
