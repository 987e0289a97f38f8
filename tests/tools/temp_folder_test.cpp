#include "tools/temp_folder.h"

#include "support/deletion_place.h"
#include "support/host_link.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "win/folders.h"
#include "win/system_text.h"

#include <vector>

using namespace deletion;
using namespace tools;

TEST_CASE("The system's, the programs', the users' and the program's own folders are never emptied") {
    REQUIRE_THROW_AWAY();
    std::vector<std::wstring> refused;
    for (const wchar_t* none :
         {L"", L".", L"Temp", L"C:", L"C:Temp", L"C:\\", L"c:/", L"\\", L"\\Temp", L"Q:\\", L"\\\\server\\share\\temp",
          L"C:\\no such folder", L"\\\\?\\C:\\users", L"\\\\.\\C:\\users", L"\\\\?\\unix\\tmp", L"C:\\windows\\win.ini",
          L"C:\\jn", L"C:\\windows\\sysnative"}) {
        refused.emplace_back(none);
    }
    const std::wstring profile = win::GetSpecialFolderPath(CSIDL_PROFILE);
    const std::wstring profiles = profile.substr(0, profile.rfind(L'\\'));
    const std::wstring name = profile.substr(profile.rfind(L'\\'));
    const std::wstring another = profiles + L"\\another user";
    std::vector<std::wstring> made = {another, profile + L"\\Saved Games", profile + L"\\OneDrive",
                                      profile + L"\\AppData\\LocalLow"};
    for (const wchar_t* kept : {L"\\Documents", L"\\Desktop", L"\\デスクトップ", L"\\My Documents"})
        made.push_back(another + kept);
    for (const std::wstring& folder : made)
        CreateDirectoryW(folder.c_str(), nullptr);
    std::vector<std::wstring> kept = made;
    kept.insert(kept.end(),
                {another, throw_away::Variable(L"CommonProgramFiles"), throw_away::Variable(L"CommonProgramW6432"),
                 throw_away::Variable(L"ProgramW6432"), throw_away::Variable(L"CommonProgramFiles(x86)"),
                 win::GetSpecialFolderPath(CSIDL_PROGRAM_FILESX86), win::GetSpecialFolderPath(CSIDL_SYSTEMX86)});
    for (const int number : {CSIDL_WINDOWS, CSIDL_SYSTEM, CSIDL_PROGRAM_FILES, CSIDL_PROFILE, CSIDL_DESKTOPDIRECTORY,
                             CSIDL_PERSONAL, CSIDL_APPDATA, CSIDL_LOCAL_APPDATA, CSIDL_COMMON_APPDATA}) {
        kept.push_back(win::GetSpecialFolderPath(number));
    }
    for (const std::wstring& folder : kept) {
        REQUIRE(GetFileAttributesW(folder.c_str()) != INVALID_FILE_ATTRIBUTES);
        refused.push_back(folder);
    }
    // By other names.
    for (const std::wstring& folder : {profile, another + L"\\Documents"}) {
        wchar_t short_name[MAX_PATH] = {};
        GetShortPathNameW(folder.c_str(), short_name, MAX_PATH);
        refused.insert(refused.end(), {win::LowerCase(folder) + L"\\", folder + L"\\..", folder + L".", short_name,
                                       L"C:\\windows\\..\\" + folder.substr(3), win::ReplaceAll(folder, L"\\", L"/")});
    }
    for (std::wstring folder = win::ApplicationFolder(); folder.size() > 2; folder.resize(folder.rfind(L'\\')))
        refused.push_back(folder);
    // Through a link in the middle of the path, and on a substituted drive.
    REQUIRE(MakeHostLink(L"users", L"C:\\jn"));
    const std::wstring drive = throw_away::Variable(L"WINEPREFIX") + L"/dosdevices/e:";
    for (const wchar_t* below : {L"", L"\\Documents", L"\\AppData", L"\\Saved Games"})
        refused.push_back(L"C:\\jn" + name + below);
    refused.emplace_back(L"C:\\jn\\another user\\Desktop");
    for (const Ways::Way way : {Ways::kAll[0], Ways::kAll[2]}) {
        CAPTURE(way.vista);
        const Ways ways(way);
        for (const std::wstring& folder : refused) {
            CAPTURE(folder);
            CHECK(FolderToEmpty(folder) == std::nullopt);
        }
        // Wine looks for new drives once a second.
        REQUIRE(CallHost(HostCall::Symlink, L"../drive_c/users", drive));
        Sleep(1100);
        for (const wchar_t* below : {L"", L"\\Documents", L"\\..\\users"})
            CHECK(FolderToEmpty(L"E:" + name + below) == std::nullopt);
        CallHost(HostCall::Unlink, drive);
        Sleep(1100);
    }
    CallHost(HostCall::Unlink, HostPath(L"C:\\jn"));
    for (std::size_t left = made.size(); left > 0; --left)
        RemoveDirectoryW(made[left - 1].c_str());
}

TEST_CASE("A folder to empty is given by its real path, on every system and through any link") {
    REQUIRE_THROW_AWAY();
    TestFolder folder(L"to empty");
    const std::wstring inner = folder.make_folder(L"Inner 日本 folder");
    const std::wstring below_windows = win::WindowsDirectory() + L"\\Temp";
    const std::wstring link = folder.path() + L"\\link";
    CreateDirectoryW(below_windows.c_str(), nullptr);
    CreateDirectoryW((inner + L"\\below").c_str(), nullptr);
    REQUIRE(MakeHostLink(L"Inner 日本 folder", link));
    wchar_t short_name[MAX_PATH] = {};
    GetShortPathNameW(inner.c_str(), short_name, MAX_PATH);
    for (const Ways::Way way : {Ways::kAll[0], Ways::kAll[2]}) {
        CAPTURE(way.vista);
        const Ways ways(way);
        for (const std::wstring& name : {inner, inner + L"\\", inner + L"\\.\\", inner + L"\\below\\..",
                                         std::wstring(short_name), link, win::ReplaceAll(inner, L"\\", L"/")}) {
            CAPTURE(name);
            CHECK(FolderToEmpty(name) == inner);
        }
        CHECK(FolderToEmpty(link + L"\\below") == inner + L"\\below");
        CHECK(FolderToEmpty(below_windows).has_value());
        const ImportHook mapped(
            "GetDriveTypeW", +[](LPCWSTR) WINAPI -> UINT { return DRIVE_REMOTE; });
        REQUIRE(mapped);
        CHECK(FolderToEmpty(inner) == std::nullopt);
    }
    CHECK(FolderToEmpty(win::LowerCase(inner)) == inner);
    RemoveDirectoryW((inner + L"\\below").c_str());
    CallHost(HostCall::Unlink, HostPath(link));
}
