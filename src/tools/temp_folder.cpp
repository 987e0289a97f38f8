#include "tools/temp_folder.h"

#include "startup/command_path.h"
#include "startup/path.h"
#include "tools/real_path.h"
#include "win/file_identity.h"
#include "win/folders.h"
#include "win/sized_text.h"
#include "win/system_text.h"
#include "win/text.h"

#include <set>
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

// Folders that have no number: those of 64-bit programs for a 32-bit one, profiles, and what users are told to keep
// their files in.
constexpr const wchar_t* kKeptVariables[] = {
    L"ProgramFiles",       L"ProgramFiles(x86)",
    L"ProgramW6432",       L"CommonProgramFiles",
    L"CommonProgramW6432", L"CommonProgramFiles(x86)",
    L"ProgramData",        L"PUBLIC",
    L"ALLUSERSPROFILE",    L"USERPROFILE",
    L"SystemRoot",         L"OneDrive",
    L"OneDriveConsumer",   L"OneDriveCommercial",
};

// What lies in a profile under one of the names that Windows gives it, the Japanese Windows XP too.
constexpr const wchar_t* kProfileFolders[] = {
    L"",
    L"Desktop",
    L"デスクトップ",
    L"Documents",
    L"My Documents",
    L"Downloads",
    L"Pictures",
    L"Music",
    L"Videos",
    L"Favorites",
    L"Contacts",
    L"Links",
    L"Searches",
    L"Saved Games",
    L"3D Objects",
    L"OneDrive",
    L"Start Menu",
    L"スタート メニュー",
    L"AppData\\Roaming",
    L"AppData\\Local",
    L"AppData\\LocalLow",
    L"Application Data",
    L"Local Settings\\Application Data",
};

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

// The profiles beside the user's own, and that one; where profiles lie in a drive's root only that.
std::vector<std::wstring> Profiles() {
    const std::wstring own = win::GetSpecialFolderPath(CSIDL_PROFILE);
    std::vector<std::wstring> profiles = {own};
    const std::wstring folder = startup::ParentFolder(RealPath(own));
    if (folder.size() < kPrefixLength + kDriveRootLength) return profiles;
    WIN32_FIND_DATAW entry = {};
    const win::FindHandle find(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    for (bool more = static_cast<bool>(find); more; more = FindNextFileW(find.get(), &entry) != FALSE) {
        const std::wstring name = entry.cFileName;
        if (name != L"." && name != L"..") profiles.push_back(folder.substr(kPrefixLength) + L"\\" + name);
    }
    return profiles;
}

std::vector<std::wstring> KeptFolders() {
    std::vector<std::wstring> folders = {win::WindowsDirectory(), win::SystemDirectory(), win::ApplicationFolder()};
    for (const int number : kKeptFolders)
        folders.push_back(win::GetSpecialFolderPath(number));
    for (const wchar_t* name : kKeptVariables)
        folders.push_back(Variable(name));
    for (const std::wstring& profile : Profiles()) {
        for (const wchar_t* name : kProfileFolders)
            folders.push_back(startup::JoinPath(profile, name));
    }
    // What is on the network is nowhere below a folder of this computer.
    std::erase_if(folders,
                  [](const std::wstring& folder) { return !HasDrive(folder) || startup::IsOnNetwork(folder); });
    return folders;
}

// The kept folders and everything above them.
class KeptPlaces {
public:
    KeptPlaces() {
        for (const std::wstring& folder : KeptFolders()) {
            const std::wstring named = Extended(win::FullPath(folder));
            add(named);
            add(RealPath(named));
        }
    }

    bool has(const win::FileIdentity& folder) const { return places_.contains(folder); }

private:
    // An extended path. What lies above it is added too, each once.
    void add(std::wstring_view path) {
        path = WithoutEndingBackslashes(path);
        while (path.size() > kPrefixLength && paths_.insert(win::LowerCase(path)).second) {
            const bool drive = path.size() < kPrefixLength + kDriveRootLength;
            const auto identity = win::IdentityOf(std::wstring(path) + (drive ? L"\\" : L""));
            if (identity) places_.insert(*identity);
            path = path.substr(0, path.find_last_of(L'\\'));
        }
    }

    std::set<std::wstring> paths_;
    std::set<win::FileIdentity> places_;
};

bool IsFolder(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

std::wstring GetTempFolder() {
    wchar_t path[kTempPathLength] = {};
    const DWORD length = GetTempPathW(kTempPathLength, path);
    return length < kTempPathLength ? std::wstring(win::CutAtNul({path, length})) : std::wstring();
}

std::optional<std::wstring> FolderToEmpty(std::wstring_view folder) {
    if (!HasDrive(folder)) return {};
    const std::wstring named = win::FullPath(std::wstring(folder));
    if (!HasDrive(named) || startup::IsOnNetwork(named)) return {};
    const std::wstring real(WithoutEndingBackslashes(RealPath(named)));
    if (real.size() < kPrefixLength + kDriveRootLength || !IsFolder(real)) return {};
    const std::wstring path = real.substr(kPrefixLength);
    if (!HasDrive(path) || startup::IsOnNetwork(path)) return {};
    const auto identity = win::IdentityOf(real);
    if (!identity || identity != win::IdentityOf(named) || KeptPlaces().has(*identity)) return {};
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
