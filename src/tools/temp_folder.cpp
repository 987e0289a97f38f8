#include "tools/temp_folder.h"

#include "startup/command_path.h"
#include "startup/path.h"
#include "tools/real_path.h"
#include "win/folders.h"
#include "win/sized_text.h"
#include "win/system_text.h"
#include "win/text.h"

#include <algorithm>
#include <vector>

namespace tools {
namespace {

constexpr DWORD kTempPathLength = 256;
constexpr std::size_t kDriveRootLength = 3;  // "C:\"
constexpr std::size_t kPrefixLength = 4;     // "\\?\"

// Windows' own folders, programs' and what users keep. A folder that the system does not know is passed over.
constexpr int kKeptFolders[] = {
    CSIDL_WINDOWS,        CSIDL_SYSTEM,           CSIDL_SYSTEMX86,
    CSIDL_PROGRAM_FILES,  CSIDL_PROGRAM_FILESX86, CSIDL_PROGRAM_FILES_COMMON,
    CSIDL_PROFILE,        CSIDL_DESKTOPDIRECTORY, CSIDL_COMMON_DESKTOPDIRECTORY,
    CSIDL_PERSONAL,       CSIDL_COMMON_DOCUMENTS, CSIDL_MYPICTURES,
    CSIDL_MYMUSIC,        CSIDL_MYVIDEO,          CSIDL_FAVORITES,
    CSIDL_STARTMENU,      CSIDL_APPDATA,          CSIDL_LOCAL_APPDATA,
    CSIDL_COMMON_APPDATA, CSIDL_COMMON_STARTMENU, CSIDL_COMMON_PICTURES,
    CSIDL_COMMON_MUSIC,   CSIDL_COMMON_VIDEO,     CSIDL_FONTS,
};

// Folders that have no number: for a 32-bit program on 64-bit Windows the 64-bit programs' folder, and profiles.
constexpr const wchar_t* kKeptVariables[] = {L"ProgramFiles", L"ProgramW6432",       L"ProgramData",
                                             L"PUBLIC",       L"ALLUSERSPROFILE",    L"USERPROFILE",
                                             L"SystemRoot",   L"CommonProgramW6432", L"CommonProgramFiles(x86)"};

// The variables that GetTempPathW follows, in its order.
constexpr const wchar_t* kTempVariables[] = {L"TMP", L"TEMP"};

std::wstring Variable(const wchar_t* name) {
    return win::SizedText([name](LPWSTR text, DWORD size) { return GetEnvironmentVariableW(name, text, size); });
}

bool HasDrive(std::wstring_view path) {
    if (path.size() < kDriveRootLength || path[1] != L':' || (path[2] != L'\\' && path[2] != L'/')) return false;
    return win::IsDriveLetter(path[0]);
}

std::wstring_view WithoutEndingBackslashes(std::wstring_view path) {
    return path.substr(0, path.find_last_not_of(L'\\') + 1);
}

std::vector<std::wstring> KeptFolders() {
    std::vector<std::wstring> folders = {win::WindowsDirectory(), win::SystemDirectory(), win::ApplicationFolder()};
    for (const int number : kKeptFolders)
        folders.push_back(win::GetSpecialFolderPath(number));
    for (const wchar_t* name : kKeptVariables)
        folders.push_back(Variable(name));
    folders.push_back(startup::JoinPath(win::GetSpecialFolderPath(CSIDL_PROFILE), L"Downloads"));  // has no number
    std::erase_if(folders, [](const std::wstring& folder) { return !HasDrive(folder); });
    return folders;
}

// The folders both as they are named and as they really lie: one of the two may be out of reach.
std::vector<std::wstring> WithRealPaths(const std::vector<std::wstring>& folders) {
    std::vector<std::wstring> all;
    for (const std::wstring& folder : folders) {
        all.push_back(Extended(WithoutEndingBackslashes(folder)));
        all.emplace_back(WithoutEndingBackslashes(RealPath(folder)));
    }
    std::erase_if(all, [](const std::wstring& folder) { return folder.size() <= kPrefixLength; });
    return all;
}

bool IsPlainFolder(const std::wstring& path) {
    WIN32_FIND_DATAW entry = {};
    const win::FindHandle find(FindFirstFileW(path.c_str(), &entry));
    return find && (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 && !IsLink(entry);
}

// The folder of all profiles, as it really lies; empty where profiles lie in a drive's root.
std::wstring ProfilesFolder() {
    const std::wstring folder = startup::ParentFolder(RealPath(win::GetSpecialFolderPath(CSIDL_PROFILE)));
    return folder.size() < kPrefixLength + kDriveRootLength ? std::wstring() : folder;
}

}  // namespace

std::wstring GetTempFolder() {
    wchar_t path[kTempPathLength] = {};
    const DWORD length = GetTempPathW(kTempPathLength, path);
    return length < kTempPathLength ? std::wstring(win::CutAtNul({path, length})) : std::wstring();
}

bool MustBeKept(std::wstring_view folder, std::span<const std::wstring> kept) {
    if (folder.size() < kPrefixLength + kDriveRootLength) return true;
    const std::wstring root = win::LowerCase(folder) + L"\\";
    return std::any_of(kept.begin(), kept.end(),
                       [&root](const std::wstring& path) { return (win::LowerCase(path) + L"\\").starts_with(root); });
}

std::optional<std::wstring> FolderToEmpty(std::wstring_view folder) {
    const std::wstring named(WithoutEndingBackslashes(folder));
    if (!HasDrive(named) || !IsPlainFolder(named)) return {};
    const std::wstring real(WithoutEndingBackslashes(RealPath(named)));
    if (real.size() <= kPrefixLength) return {};
    const std::wstring path = real.substr(kPrefixLength);
    // Before Windows Vista a mapped drive keeps its letter.
    if (!HasDrive(path) || startup::IsOnNetwork(path)) return {};
    if (MustBeKept(real, WithRealPaths(KeptFolders()))) return {};
    const std::wstring profiles = ProfilesFolder();
    if (!profiles.empty() && win::LowerCase(startup::ParentFolder(real)) == win::LowerCase(profiles)) return {};
    return path;
}

std::optional<std::wstring> TempFolderToEmpty() {
    for (const wchar_t* name : kTempVariables) {
        const std::wstring value = Variable(name);
        if (value.empty()) continue;
        if (!HasDrive(value)) return {};
        break;
    }
    return FolderToEmpty(GetTempFolder());
}

}  // namespace tools
