#include "programs/uninstall_command.h"

#include "support/import_hook.h"
#include "support/recorder.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "win/com_ptr.h"
#include "win/folders.h"
#include "win/system_text.h"

#include <doctest/doctest.h>

using namespace programs;

TEST_CASE("A command names its quoted part or its longest leading part that is a file") {
    TestFolder folder(L"commands");
    const std::wstring& base = folder.path();
    folder.make_folder(L"My App");
    const std::wstring program = folder.make_file(L"My App\\un.exe");
    const std::wstring document = folder.make_file(L"My App\\read me.txt");
    const std::wstring planted = folder.make_file(L"My.exe");
    SetCurrentDirectoryW(base.c_str());
    folder.make_folder(L"setup");
    folder.make_file(L"setup.exe");
    const std::wstring run_dll = win::SystemDirectory() + L"\\rundll32.exe";
    const std::wstring installer = win::SystemDirectory() + L"\\msiexec.exe";

    const struct {
        std::wstring command;
        std::wstring path;
        std::wstring arguments;
    } cases[] = {
        {L"\"" + program + L"\" /S", program, L"/S"},
        {L"\"" + program + L"\"/S _?=C:\\x", program, L"/S _?=C:\\x"},
        {L"\"" + base + L"\\My App\\un\" /S", program, L"/S"},
        {program + L" /S -x", program, L"/S -x"},
        {base + L"\\My App\\un /S", program, L"/S"},
        {L"  " + program + L"  ", program, L""},
        {document + L" 1", document, L"1"},
        {base + L"\\My C:\\some list.txt", planted, L"C:\\some list.txt"},
        {base + L"\\My.exe App\\gone.exe", planted, L"App\\gone.exe"},
        {L"msiexec.exe /X{A-B}", installer, L"/X{A-B}"},
        {L"\"msiexec\" /X{A-B}", installer, L"/X{A-B}"},
        {L"rundll32 a.dll,Install %SystemRoot%\\x.inf", run_dll, L"a.dll,Install %SystemRoot%\\x.inf"},
        {base + L"\\setup files\\gone", L"", L""},
        // A path that leads on behind the blank, or to a folder, is no command for the file before the blank.
        {base + L"\\My App\\gone.exe /S", L"", L""},
        {base + L"\\My App\\more words\\gone -x", L"", L""},
        {base + L"\\My App", L"", L""},
        {base + L"\\My App /S", L"", L""},
        // Neither the current folder nor that of this program is searched.
        {L"My.exe", L"", L""},
        {L".\\My.exe", L"", L""},
        {L"My App\\un.exe", L"", L""},
        {L"test_program_actions.exe", L"", L""},
        // Quotes in the wrong places, and nothing at all.
        {base + L"\\\"My App\"\\un.exe", L"", L""},
        {L"\"" + program + L" /S\"", L"", L""},
        {L"\"\" /S", L"", L"/S"},
        {L"\"", L"", L""},
        {std::wstring(8000, L'x'), L"", L""},
    };
    for (const auto& each : cases) {
        CAPTURE(each.command);
        const CommandProgram found = FindCommandProgram(each.command);
        CHECK(win::LowerCase(found.path) == win::LowerCase(each.path));
        if (!each.path.empty()) CHECK(found.arguments == each.arguments);
    }
    std::wstring long_command = program;
    while (long_command.size() < 8000)
        long_command += L" word";
    CHECK(FindCommandProgram(long_command).path == program);
    SetCurrentDirectoryW(L"C:\\");
}

TEST_CASE("A command runs as stored, minimised, and no planted program runs in its place") {
    Recorder recorder;
    TestFolder folder(L"C Program Files");
    const std::wstring program = folder.own(L"uninst.exe");
    const std::wstring command = program + L" /a  \"b c\" /D=" + folder.path();
    std::wstring planted = folder.path();
    planted.resize(planted.find(L" Program"));
    planted += L".exe";
    REQUIRE(recorder.install(planted));
    {
        Recorder program_only;
        REQUIRE(program_only.install(program));
        const win::StartedProcess started = StartUninstallCommand(command, nullptr);
        REQUIRE(started.process);
        const auto starts = recorder.starts(1);
        REQUIRE(starts.size() == 1);
        CHECK(starts[0].program.ends_with(L"uninst.exe"));
        CHECK(starts[0].command_line == command);
        CHECK(starts[0].show == L"2");
    }
    CHECK_FALSE(StartUninstallCommand(command, nullptr).process);
    CHECK_FALSE(StartUninstallCommand(folder.path(), nullptr).process);
    CHECK_FALSE(StartUninstallCommand(folder.make_file(L"text.txt", "text"), nullptr).process);
    CHECK(recorder.starts_after_a_while().size() == 1);
}

TEST_CASE("The wait ends with the first process, whatever it leaves behind and whatever its exit code") {
    Recorder recorder;
    TestFolder folder(L"waiting");
    const std::wstring program = folder.own(L"uninst.exe");
    REQUIRE(recorder.install(program));
    TestHost host;
    const auto run = [&](const std::wstring& arguments) {
        host.pumps = 0;
        const win::StartedProcess started = StartUninstallCommand(program + L" " + arguments, nullptr);
        REQUIRE(started.process);
        const DWORD before = GetTickCount();
        WaitForProcessEnd(started.process.get(), host);
        CHECK(WaitForSingleObject(started.process.get(), 0) == WAIT_OBJECT_0);
        return GetTickCount() - before;
    };

    SUBCASE("Messages are processed while it runs") {
        CHECK(run(L"--wait 500") >= 400);
        CHECK(host.pumps >= 10);
    }
    SUBCASE("The exit code that stands for a running process") { CHECK(run(L"--exit 259") < 5000); }
    SUBCASE("A child is left behind") {
        CHECK(run(L"--start") < 1800);
        CHECK(recorder.starts(2).size() == 2);
    }
}

TEST_CASE("Where a start needs elevation the system asks, and the program is waited for; a refusal ends quietly") {
    const win::ComApartment apartment;
    Recorder recorder;
    TestFolder folder(L"elevated program");
    const std::wstring program = folder.own(L"uninst.exe");
    REQUIRE(recorder.install(program));
    const ImportHook refused(
        "CreateProcessW",
        +[](LPCWSTR, LPWSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD flags, LPVOID, LPCWSTR,
            LPSTARTUPINFOW, LPPROCESS_INFORMATION) WINAPI -> BOOL {
            CHECK((flags & CREATE_DEFAULT_ERROR_MODE) != 0);
            SetLastError(740);
            return FALSE;
        });
    REQUIRE(refused);
    TestHost host;
    {
        const win::StartedProcess started = StartUninstallCommand(program + L" /S --wait 300", nullptr);
        REQUIRE(started.process);
        WaitForProcessEnd(started.process.get(), host);
        CHECK(host.pumps >= 10);
        const auto starts = recorder.starts(1);
        REQUIRE(starts.size() == 1);
        CHECK(starts[0].command_line.ends_with(L" /S --wait 300"));
        CHECK(starts[0].show == L"2");
    }
    const ImportHook cancelled(
        "ShellExecuteExW", +[](SHELLEXECUTEINFOW* record) WINAPI -> BOOL {
            CHECK(record->lpVerb == std::wstring(L"runas"));
            SetLastError(ERROR_CANCELLED);
            return FALSE;
        });
    CHECK_FALSE(StartUninstallCommand(program + L" /S", nullptr).process);
    CHECK(recorder.starts_after_a_while().size() == 1);
}
