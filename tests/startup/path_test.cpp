#include "startup/path.h"
#include "startup/command_path.h"

#include "support/show.h"
#include "support/test_folder.h"
#include "support/throw_away.h"
#include "win/handle.h"

using namespace startup;

TEST_CASE("parts of a path") {
    CHECK(ParentFolder(L"C:\\a\\b.exe") == L"C:\\a");
    CHECK(ParentFolder(L"C:\\a\\") == L"C:\\a");
    CHECK(ParentFolder(L"b.exe") == L"");
    CHECK(FileNamePart(L"C:\\a\\b.exe") == L"b.exe");
    CHECK(FileNamePart(L"C:\\a\\") == L"");
    CHECK(FileNamePart(L"b.exe") == L"b.exe");
    CHECK(BaseNamePart(L"C:\\a.b\\c.d.exe") == L"c.d");
    CHECK(BaseNamePart(L"C:\\a.b\\c") == L"");
    CHECK(BaseNamePart(L"") == L"");
    CHECK(ExtensionPart(L"c.d.LNK") == L"LNK");
    CHECK(ExtensionPart(L"c") == L"");
    CHECK(ExtensionPart(L"c.") == L"");
    CHECK(JoinPath(L"C:\\a", L"b") == L"C:\\a\\b");
    CHECK(JoinPath(L"C:\\a\\", L"\\b") == L"C:\\a\\\\b");  // three in a row: one pair made single
    CHECK(JoinPath(L"\\\\server\\share", L"b") == L"\\server\\share\\b");
    CHECK(JoinPath(L"", L"") == L"\\");
}

TEST_CASE("a command line is reduced to the program that it starts") {
    TestFolder folder(L"日本 語-path");
    const std::wstring program = folder.make_file(L"a -b.exe");
    const std::wstring plain = folder.make_file(L"plain.exe");

    SUBCASE("quotes end it, whatever follows") {
        CHECK(ResolveCommandPath(L"\"" + program + L"\" /background") == program);
        CHECK(ResolveCommandPath(L"\"" + program) == program);
        CHECK(ResolveCommandPath(L"\"C:\\gone\\a b.exe\" -x") == L"C:\\gone\\a b.exe");
    }
    SUBCASE("a path that exists is taken whole") { CHECK(ResolveCommandPath(program) == program); }
    SUBCASE("arguments with slash or hyphen are cut, others stay") {
        CHECK(ResolveCommandPath(plain + L"  /s /t") == plain);
        CHECK(ResolveCommandPath(plain + L" -min /x") == plain);
        CHECK(ResolveCommandPath(L"  C:\\gone.exe -a /b") == L"C:\\gone.exe");
        CHECK(ResolveCommandPath(plain + L" file.txt") == plain + L" file.txt");
        // The file exists only with the blank and hyphen that the cut removes.
        CHECK(ResolveCommandPath(program + L" /s") != program);
    }
    SUBCASE("nothing at all") {
        CHECK(ResolveCommandPath(L"\"") == ResolveCommandPath(L""));
        CHECK(ResolveCommandPath(L"\"\"") == ResolveCommandPath(L""));
    }
}

TEST_CASE("only a leading folder of programs is expanded, only the Windows folder is searched") {
    wchar_t programs[MAX_PATH] = {};
    SHGetSpecialFolderPathW(nullptr, programs, CSIDL_PROGRAM_FILES, FALSE);
    const std::wstring folder = programs;
    CHECK(ResolveCommandPath(L"%ProgramFiles%\\gone\\app.exe -min") == folder + L"\\gone\\app.exe");
    CHECK(ResolveCommandPath(L"\"%PROGRAMFILES%\\gone\\app.exe\" x") == folder + L"\\gone\\app.exe");
    CHECK(ResolveCommandPath(L"%ProgramFiles(x86)%\\app.exe") == L"%ProgramFiles(x86)%\\app.exe");
    CHECK(ResolveCommandPath(L"C:%programfiles%\\app.exe") == L"C:%programfiles%\\app.exe");

    // On 64-bit Windows a program may have meant the folder of either kind.
    REQUIRE_THROW_AWAY();
    wchar_t native[MAX_PATH] = {};
    GetEnvironmentVariableW(L"ProgramW6432", native, MAX_PATH);
    for (const std::wstring& other : {std::wstring(native), std::wstring(L"C:\\Program Files (x86)")}) {
        const std::wstring app = other + L"\\of one kind.exe";
        const win::File file(CreateFileW(app.c_str(), GENERIC_WRITE, FILE_SHARE_DELETE, nullptr, CREATE_ALWAYS,
                                         FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        CHECK(ResolveCommandPath(L"%ProgramFiles%\\of one kind.exe -min") == app);
        CHECK(ResolveCommandPath(L"%ProgramW6432%\\of one kind.exe -min") ==
              std::wstring(native) + L"\\of one kind.exe");
    }
    SetEnvironmentVariableW(L"ProgramW6432", nullptr);
    CHECK(ResolveCommandPath(L"%ProgramW6432%\\gone.exe") == L"%ProgramW6432%\\gone.exe");
    SetEnvironmentVariableW(L"ProgramW6432", native);

    wchar_t windows[MAX_PATH] = {};
    GetWindowsDirectoryW(windows, MAX_PATH);
    const std::wstring explorer = std::wstring(windows) + L"\\explorer.exe";
    CHECK(ResolveCommandPath(L"explorer.exe") == explorer);
    CHECK(ResolveCommandPath(L"explorer.exe /n -x") == explorer);
    CHECK(ResolveCommandPath(L"msiexec.exe /x") == L"msiexec.exe");  // lies in the system folder
}
