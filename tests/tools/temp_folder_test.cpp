#include "tools/temp_folder.h"

#include "support/host_link.h"
#include "support/show.h"
#include "support/test_folder.h"

#include <vector>

using namespace tools;

namespace {

// Sets the variables that name the temporary folder, and puts them back.
class TempVariables {
public:
    explicit TempVariables(const wchar_t* path) { set(path, path); }
    ~TempVariables() { set(tmp_.c_str(), temp_.c_str()); }

private:
    static void set(const wchar_t* tmp, const wchar_t* temp) {
        SetEnvironmentVariableW(L"TMP", tmp);
        SetEnvironmentVariableW(L"TEMP", temp);
    }
    const std::wstring tmp_ = throw_away::Variable(L"TMP");
    const std::wstring temp_ = throw_away::Variable(L"TEMP");
};

std::wstring SpecialFolder(int number) {
    wchar_t path[MAX_PATH] = {};
    SHGetSpecialFolderPathW(nullptr, path, number, TRUE);
    return path;
}

std::wstring Upper(std::wstring text) {
    CharUpperBuffW(text.data(), static_cast<DWORD>(text.size()));
    return text;
}

}  // namespace

TEST_CASE("A folder must be kept that is a drive or that equals or contains a kept one") {
    const std::wstring kept[] = {L"\\\\?\\C:\\Windows\\System32", L"\\\\?\\D:\\ユーザー\\太郎"};
    for (const wchar_t* folder :
         {L"", L"\\\\?\\", L"\\\\?\\C:", L"\\\\?\\C:\\Windows", L"\\\\?\\c:\\WINDOWS", L"\\\\?\\C:\\Windows\\System32",
          L"\\\\?\\d:\\ユーザー", L"\\\\?\\D:\\ユーザー\\太郎"}) {
        CAPTURE(std::wstring(folder));
        CHECK(MustBeKept(folder, kept));
    }
    for (const wchar_t* folder : {L"\\\\?\\C:\\Windows\\Temp", L"\\\\?\\C:\\Win", L"\\\\?\\C:\\Windows\\System32\\a",
                                  L"\\\\?\\C:\\Windows\\System", L"\\\\?\\D:\\Windows", L"\\\\?\\D:\\ユーザー\\太"}) {
        CAPTURE(std::wstring(folder));
        CHECK_FALSE(MustBeKept(folder, kept));
    }
}

TEST_CASE("The system's, the programs', the users' and the program's own folders are never emptied") {
    std::vector<std::wstring> refused;
    for (const wchar_t* none : {L"", L".", L"Temp", L"C:", L"C:Temp", L"C:\\", L"c:/", L"\\", L"\\Temp", L"Q:\\",
                                L"\\\\server\\share\\temp", L"C:\\no such folder", L"\\\\?\\C:\\users",
                                L"\\\\.\\C:\\users", L"\\\\?\\unix\\tmp", L"C:\\windows\\win.ini"}) {
        refused.emplace_back(none);
    }
    for (const int number : {CSIDL_WINDOWS, CSIDL_SYSTEM, CSIDL_PROGRAM_FILES, CSIDL_PROFILE, CSIDL_DESKTOPDIRECTORY,
                             CSIDL_PERSONAL, CSIDL_APPDATA, CSIDL_LOCAL_APPDATA, CSIDL_COMMON_APPDATA}) {
        const std::wstring folder = SpecialFolder(number);
        REQUIRE_FALSE(folder.empty());
        refused.push_back(folder);
        refused.push_back(Upper(folder) + L"\\");
        refused.push_back(folder + L"\\..");
        refused.push_back(folder + L".");
    }
    // Of both kinds of programs, whichever this one is; Sysnative is the other system folder to a 32-bit one.
    for (const wchar_t* both : {L"C:\\Program Files", L"C:\\Program Files (x86)", L"C:\\Program Files\\Common Files",
                                L"C:\\Program Files (x86)\\Common Files", L"C:\\windows\\system32",
                                L"C:\\windows\\syswow64", L"C:\\windows\\sysnative"}) {
        refused.emplace_back(both);
    }
    REQUIRE_THROW_AWAY();
    const std::wstring profile = SpecialFolder(CSIDL_PROFILE);
    CreateDirectoryW((profile + L"\\..\\another user").c_str(), nullptr);
    refused.push_back(profile + L"\\..\\another user");
    wchar_t own[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, own, MAX_PATH);
    for (std::wstring folder = own; folder.find(L'\\') != folder.npos;) {
        folder.resize(folder.rfind(L'\\'));
        refused.push_back(folder);
    }
    for (const std::wstring& folder : refused) {
        CAPTURE(folder);
        CHECK(FolderToEmpty(folder) == std::nullopt);
    }
    RemoveDirectoryW((profile + L"\\..\\another user").c_str());
}

TEST_CASE("A folder to empty is given by its real path") {
    TestFolder folder(L"to empty");
    const std::wstring inner = folder.make_folder(L"Inner 日本");
    CHECK(FolderToEmpty(inner) == inner);
    CHECK(FolderToEmpty(inner + L"\\") == inner);
    CHECK(FolderToEmpty(Upper(inner) + L"\\.\\") == inner);
    wchar_t windows[MAX_PATH] = {};
    GetWindowsDirectoryW(windows, MAX_PATH);
    const std::wstring below_windows = std::wstring(windows) + L"\\Temp";
    CreateDirectoryW(below_windows.c_str(), nullptr);
    CHECK(FolderToEmpty(below_windows).has_value());
}

TEST_CASE("A link is no folder to empty, wherever it leads") {
    REQUIRE_THROW_AWAY();
    TestFolder folder(L"linked");
    const std::wstring target = folder.make_folder(L"target");
    const std::wstring link = folder.path() + L"\\link";
    REQUIRE(MakeHostLink(L"target", link));
    CHECK(FolderToEmpty(link) == std::nullopt);
    CHECK(FolderToEmpty(target) == target);
    // A link on the way is resolved.
    CreateDirectoryW((target + L"\\below").c_str(), nullptr);
    CHECK(FolderToEmpty(link + L"\\below") == target + L"\\below");
    RemoveDirectoryW((target + L"\\below").c_str());
}

TEST_CASE("The temporary folder is the variables' one, and nothing when they are relative, too long or lead nowhere") {
    TestFolder folder(L"temporary");
    const std::wstring own = folder.path();
    {
        const TempVariables variables(own.c_str());
        CHECK(GetTempFolder() == own + L"\\");
        CHECK(TempFolderToEmpty() == own);
    }
    {
        const TempVariables variables((L"C:\\" + std::wstring(300, L'a')).c_str());
        CHECK(GetTempFolder().empty());
        CHECK(TempFolderToEmpty() == std::nullopt);
    }
    // Relative to the current folder they would all lead to a folder that may be emptied.
    const std::wstring inner = folder.make_folder(L"inner");
    SetCurrentDirectoryW(own.c_str());
    for (const wchar_t* relative :
         {L"inner", L".\\inner", L"C:inner", L".", L"C:\\no such folder", L"C:\\", L"\\\\server\\share"}) {
        CAPTURE(std::wstring(relative));
        const TempVariables variables(relative);
        CHECK(TempFolderToEmpty() == std::nullopt);
    }
    SetCurrentDirectoryW(L"C:\\");
}
