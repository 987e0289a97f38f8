#include "programs/uninstall_command.h"

#include "support/import_hook.h"
#include "support/recorder.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "win/com_ptr.h"
#include "win/folders.h"
#include "win/system_text.h"
#include "win/text.h"

#include <doctest/doctest.h>

using namespace programs;

TEST_CASE("A stored command means one file, and nothing starts where that file is gone") {
    TestFolder folder(L"commands");
    const std::wstring& base = folder.path();
    folder.make_folder(L"My App");
    folder.make_folder(L"My - Old");
    folder.make_folder(L"My - Old\\App 1.0 x");
    const std::wstring program = folder.make_file(L"My App\\un.exe");
    const std::wstring batch = folder.make_file(L"My App\\un it.bat");
    const std::wstring dotted = folder.make_file(L"My - Old\\App 1.0 x\\un.exe");
    const std::wstring planted = folder.make_file(L"My.exe");
    folder.make_file(L"My App\\read me.txt");
    SetCurrentDirectoryW(base.c_str());
    SetEnvironmentVariableW(L"TEST_BASE", base.c_str());
    const std::wstring run_dll = win::SystemDirectory() + L"\\rundll32.exe";
    const std::wstring installer = win::SystemDirectory() + L"\\msiexec.exe";
    const std::wstring slashes = win::ReplaceAll(base, L"\\", L"/");

    const struct {
        std::wstring command;
        std::wstring path;
        std::wstring arguments;
    } cases[] = {
        {L"\"" + program + L"\" /S", program, L"/S"},
        {L"\"" + base + L"\\My App\\un\" /S", program, L"/S"},
        {program + L" /S -x", program, L"/S -x"},
        {program + L"\t/S", program, L"/S"},
        {slashes + L"/My App/un.exe /S", program, L"/S"},
        {base + L"\\My App/un.exe C:\\My.exe", program, L"C:\\My.exe"},
        {base + L"\\My App\\un /S sub\\gone.exe", program, L"/S sub\\gone.exe"},
        {batch + L" \"a b\"", batch, L"\"a b\""},
        {dotted + L" -x", dotted, L"-x"},
        {base + L"\\My.exe App\\gone.exe", planted, L"App\\gone.exe"},
        {L"%TEST_BASE%\\My App\\un.exe /S", program, L"/S"},
        {L"\"%TEST_BASE%\\My App\\un.exe\" %TEST_BASE%", program, base},
        {program + L" %TEST_BASE%", program, L"%TEST_BASE%"},
        {L"msiexec.exe /X{A-B}", installer, L"/X{A-B}"},
        {L"\"msiexec\" /X{A-B}", installer, L"/X{A-B}"},
        {L"MsiExec /x C:\\gone.msi", installer, L"/x C:\\gone.msi"},
        {L"rundll32 a.dll,Install %SystemRoot%\\x.inf", run_dll, L"a.dll,Install %SystemRoot%\\x.inf"},
        {L"rundll32 shell32.dll,Control_RunDLL appwiz.cpl", run_dll, L"shell32.dll,Control_RunDLL appwiz.cpl"},
        // The file "My.exe" is not meant by a path that leads on behind the blank, or by a folder.
        {slashes + L"/My Files/Gone App/un.exe /S", L"", L""},
        {base + L"\\My Files/Gone App/un.exe /S", L"", L""},
        {base + L"\\My - Old\\Gone App\\un.exe /S", L"", L""},
        {base + L"\\My Remover.exe /S", L"", L""},
        {base + L"\\My Remover.v2.MSI", L"", L""},
        {base + L"\\My Files\\gone", L"", L""},
        {slashes + L"/My Files/gone -x", L"", L""},
        {base + L"\\My - Old\\gone /S", L"", L""},
        {base + L"\\My App\\read me.txt 1", L"", L""},
        {base + L"\\My App /S", L"", L""},
        {L"%TEST_BASE%\\My Files\\gone.exe /S", L"", L""},
        {L"%TEST_GONE%\\My App\\un.exe", L"", L""},
        {L"//no.such.server/share/My App/un.exe /S", L"", L""},
        // Neither the current folder nor that of this program is searched.
        {L"My.exe", L"", L""},
        {L".\\My.exe", L"", L""},
        {L"My App\\un.exe", L"", L""},
        {L"regedit files\\un.exe", L"", L""},
        {base.substr(2) + L"\\My.exe", L"", L""},
        {L"test_program_actions.exe", L"", L""},
        // Quotes in the wrong places, and nothing at all.
        {base + L"\\\"My App\"\\un.exe", L"", L""},
        {L"\"" + program + L" /S\"", L"", L""},
        {L"\"\" /S", L"", L""},
        {L"\"", L"", L""},
        {std::wstring(8000, L'x'), L"", L""},
    };
    for (const auto& each : cases) {
        CAPTURE(each.command);
        const CommandProgram found = FindCommandProgram(each.command);
        CHECK(win::LowerCase(found.path) == win::LowerCase(each.path));
        if (!each.path.empty()) CHECK(found.arguments == each.arguments);
    }
    CHECK(FindCommandProgram(program + std::wstring(8000, L' ') + L"word").path == program);
    SetCurrentDirectoryW(L"C:\\");
}

TEST_CASE("A command runs as stored, a batch file by the system's cmd, and no planted program in its place") {
    Recorder recorder;
    TestFolder folder(L"C Program Files");
    const std::wstring program = folder.own(L"uninst.exe");
    const std::wstring command = program + L" /a  \"b c\" /D=" + folder.path();
    const std::wstring batch = folder.make_file(L"un it.bat", "@\"%~dp0uninst.exe\" batch %*\r\n");
    std::wstring planted = folder.path();
    planted.resize(planted.find(L" Program"));
    const std::wstring planted_batch = planted + L".bat";
    REQUIRE(CopyFileW(batch.c_str(), planted_batch.c_str(), TRUE));
    REQUIRE(recorder.install(planted + L".exe"));
    {
        Recorder program_only;
        REQUIRE(program_only.install(program));
        for (const std::wstring& each : {command, batch + L" /S \"x y\"", L"\"" + batch + L"\" /S \"x y\""}) {
            const win::StartedProcess started = StartUninstallCommand(each, nullptr);
            REQUIRE(started.process);
            CHECK(WaitForSingleObject(started.process.get(), 10000) == WAIT_OBJECT_0);
        }
        const auto starts = recorder.starts(3);
        REQUIRE(starts.size() == 3);
        CHECK(starts[0].program.ends_with(L"uninst.exe"));
        CHECK(starts[0].command_line == command);
        CHECK(starts[0].show == L"2");
        CHECK(starts[1].command_line.ends_with(L"uninst.exe\" batch /S \"x y\""));
        CHECK(starts[2].command_line == starts[1].command_line);
    }
    for (const std::wstring& each : {command, folder.path(), folder.make_file(L"text.txt", "text")})
        CHECK_FALSE(StartUninstallCommand(each, nullptr).process);
    CHECK(recorder.starts_after_a_while().size() == 3);
    DeleteFileW(planted_batch.c_str());
}

TEST_CASE("The wait ends with the first process, whatever it leaves behind and whatever its exit code") {
    Recorder recorder;
    TestFolder folder(L"waiting");
    const std::wstring program = folder.own(L"uninst.exe");
    REQUIRE(recorder.install(program));
    TestHost host;
    // Milliseconds.
    const auto run = [&](const std::wstring& arguments) {
        const win::StartedProcess started = StartUninstallCommand(program + L" " + arguments, nullptr);
        REQUIRE(started.process);
        const DWORD before = GetTickCount();
        WaitForProcessEnd(started.process.get(), host);
        CHECK(WaitForSingleObject(started.process.get(), 0) == WAIT_OBJECT_0);
        return GetTickCount() - before;
    };
    CHECK(run(L"--wait 500") >= 400);
    CHECK(host.pumps >= 10);  // messages are processed meanwhile
    CHECK(run(L"--exit 259") < 5000);
    CHECK(run(L"--start") < 1800);
    CHECK(recorder.starts(4).size() == 4);  // with the child that is left behind

    // Where a start needs elevation the system asks, and the program is waited for; a refusal ends quietly.
    const win::ComApartment apartment;
    const ImportHook refused(
        "CreateProcessW",
        +[](LPCWSTR, LPWSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD flags, LPVOID, LPCWSTR,
            LPSTARTUPINFOW, LPPROCESS_INFORMATION) WINAPI -> BOOL {
            CHECK((flags & CREATE_DEFAULT_ERROR_MODE) != 0);
            SetLastError(740);
            return FALSE;
        });
    REQUIRE(refused);
    CHECK(run(L"/S --wait 300") >= 200);
    const auto starts = recorder.starts(5);
    REQUIRE(starts.size() == 5);
    CHECK(starts[4].command_line.ends_with(L" /S --wait 300"));
    CHECK(starts[4].show == L"2");
    const ImportHook cancelled(
        "ShellExecuteExW", +[](SHELLEXECUTEINFOW* record) WINAPI -> BOOL {
            CHECK(record->lpVerb == std::wstring(L"runas"));
            SetLastError(ERROR_CANCELLED);
            return FALSE;
        });
    CHECK_FALSE(StartUninstallCommand(program + L" /S", nullptr).process);
    CHECK(recorder.starts_after_a_while().size() == 5);
}
