#include "startup/path.h"
#include "startup/command_path.h"

#include "support/show.h"
#include "support/test_folder.h"
#include "support/throw_away.h"
#include "win/folders.h"
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

    const std::pair<std::wstring, std::wstring> cases[] = {
        // Quotes end it, whatever follows.
        {L"\"" + program + L"\" /background", program},
        {L"\"" + program, program},
        {L"\"C:\\gone\\a b.exe\" -x", L"C:\\gone\\a b.exe"},
        // A path that exists is taken whole; arguments with slash or hyphen are cut, others stay.
        {program, program},
        {plain + L"  /s /t", plain},
        {plain + L" -min /x", plain},
        {L"  C:\\gone.exe -a /b", L"C:\\gone.exe"},
        {plain + L" file.txt", plain + L" file.txt"},
        // The file exists only with the blank and hyphen that the cut removes.
        {program + L" /s", program.substr(0, program.find(L" -"))},
    };
    for (const auto& [line, path] : cases)
        CHECK(ResolveCommandPath(line) == path);
    CHECK(ResolveCommandPath(L"\"") == ResolveCommandPath(L""));
    CHECK(ResolveCommandPath(L"\"\"") == ResolveCommandPath(L""));
}

TEST_CASE("only a leading folder of programs is expanded, only the Windows folder is searched") {
    const std::wstring folder = win::GetSpecialFolderPath(CSIDL_PROGRAM_FILES);
    const std::wstring explorer = win::WindowsDirectory() + L"\\explorer.exe";
    const std::pair<const wchar_t*, std::wstring> cases[] = {
        {L"%ProgramFiles%\\gone\\app.exe -min", folder + L"\\gone\\app.exe"},
        {L"\"%PROGRAMFILES%\\gone\\app.exe\" x", folder + L"\\gone\\app.exe"},
        {L"%ProgramFiles(x86)%\\app.exe", L"%ProgramFiles(x86)%\\app.exe"},
        {L"C:%programfiles%\\app.exe", L"C:%programfiles%\\app.exe"},
        {L"explorer.exe", explorer},
        {L"explorer.exe /n -x", explorer},
        {L"msiexec.exe /x", L"msiexec.exe"},  // lies in the system folder
    };
    for (const auto& [line, path] : cases)
        CHECK(ResolveCommandPath(line) == path);

    // On 64-bit Windows a program may have meant the folder of either kind.
    REQUIRE_THROW_AWAY();
    const std::wstring native = throw_away::Variable(L"ProgramW6432");
    for (const std::wstring& other : {native, win::GetSpecialFolderPath(CSIDL_PROGRAM_FILESX86)}) {
        const std::wstring app = other + L"\\of one kind.exe";
        const win::File file(CreateFileW(app.c_str(), GENERIC_WRITE, FILE_SHARE_DELETE, nullptr, CREATE_ALWAYS,
                                         FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        CHECK(ResolveCommandPath(L"%ProgramFiles%\\of one kind.exe -min") == app);
        CHECK(ResolveCommandPath(L"%ProgramW6432%\\of one kind.exe -min") == native + L"\\of one kind.exe");
    }
    SetEnvironmentVariableW(L"ProgramW6432", nullptr);
    CHECK(ResolveCommandPath(L"%ProgramW6432%\\gone.exe") == L"%ProgramW6432%\\gone.exe");
    SetEnvironmentVariableW(L"ProgramW6432", native.c_str());
}
