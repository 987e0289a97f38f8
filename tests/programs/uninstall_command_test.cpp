#include "programs/uninstall_command.h"

#include "programs/program_actions.h"
#include "support/import_hook.h"
#include "support/recorder.h"
#include "support/test_host.h"
#include "win/com_ptr.h"

using namespace programs;

TEST_CASE("a stored command means one file, and nothing starts where that file is gone") {
    TestFolder folder(L"commands");
    const std::wstring& base = folder.path();
    for (const wchar_t* each : {L"My App", L"My - Old", L"My - Old\\App 1.0 x"})
        folder.make_folder(each);
    const std::wstring program = folder.make_file(L"My App\\un.exe");
    const std::wstring batch = folder.make_file(L"My App\\un it.bat");
    const std::wstring dotted = folder.make_file(L"My - Old\\App 1.0 x\\un.exe");
    const std::wstring planted = folder.make_file(L"My.exe");
    folder.make_file(L"My App\\read me.txt");
    SetCurrentDirectoryW(base.c_str());
    SetEnvironmentVariableW(L"TEST_BASE", base.c_str());
    const std::wstring installer = win::SystemDirectory() + L"\\msiexec.exe";
    const std::wstring slashes = win::ReplaceAll(base, L"\\", L"/");

    const struct {
        std::wstring command;
        std::wstring path = {};
        std::wstring arguments = {};
    } cases[] = {
        {L"\"" + base + L"\\My App\\un\" /S", program, L"/S"},
        {program + L"\t/S -x", program, L"/S -x"},
        {slashes + L"/My App/un.exe C:\\My.exe", program, L"C:\\My.exe"},
        {base + L"\\My App\\un /S sub\\gone.exe", program, L"/S sub\\gone.exe"},
        {program + std::wstring(8000, L' ') + L"word", program, L"word"},
        {batch + L" \"a b\"", batch, L"\"a b\""},
        {dotted + L" -x", dotted, L"-x"},
        {base + L"\\My.exe App\\gone.exe", planted, L"App\\gone.exe"},
        {L"\"%TEST_BASE%\\My App\\un.exe\" %TEST_BASE%", program, base},
        {program + L" %TEST_BASE%", program, L"%TEST_BASE%"},
        {L"\"msiexec\" /X{A-B}", installer, L"/X{A-B}"},
        {L"MsiExec /x C:\\gone.msi %TEST_BASE%", installer, L"/x C:\\gone.msi %TEST_BASE%"},
        {L"rundll32 shell32.dll,Control_RunDLL appwiz.cpl", win::SystemDirectory() + L"\\rundll32.exe",
         L"shell32.dll,Control_RunDLL appwiz.cpl"},
        // The file "My.exe" is not meant by a path that leads on behind the blank, or by a folder.
        {slashes + L"/My Files/Gone App/un.exe /S"},
        {slashes + L"/My Files/gone -x"},
        {base + L"\\My Remover.v2.MSI"},
        {base + L"\\My App\\read me.txt 1"},
        {base + L"\\My App /S"},
        {L"%TEST_BASE%\\My Files\\gone.exe /S"},
        {L"//no.such.server/share/My App/un.exe /S"},
        // Neither the current folder nor that of this program is searched.
        {L"My.exe"},
        {L"My App\\un.exe"},
        {base.substr(2) + L"\\My.exe"},
        {L"test_programs.exe"},
        // Quotes in the wrong places, and nothing at all.
        {base + L"\\\"My App\"\\un.exe"},
        {L"\"" + program + L" /S\""},
        {std::wstring(8000, L'x')},
    };
    for (const auto& each : cases) {
        CAPTURE(each.command);
        const CommandProgram found = FindCommandProgram(each.command);
        CHECK(win::LowerCase(found.path) == win::LowerCase(each.path));
        CHECK(found.arguments == each.arguments);
    }
    SetCurrentDirectoryW(L"C:\\");
}

TEST_CASE("a command runs as stored, by no planted program, and messages are processed until its process ends") {
    const win::ComApartment apartment;
    Recorder recorder;
    TestFolder folder(L"C Program Files");
    const std::wstring program = folder.own(L"uninst.exe");
    const std::wstring command = program + L" /a  \"b c\" /D=" + folder.path() + L" --hold";
    const std::wstring batch = folder.make_file(L"un it.bat", "@\"%~dp0uninst.exe\" batch %*\r\n");
    const std::wstring planted = folder.path().substr(0, folder.path().find(L" Program"));
    const StandIn planted_batch(planted + L".bat", batch);
    REQUIRE((planted_batch.placed() && recorder.install(planted + L".exe")));
    // The recorder's option --hold waits for it.
    const win::Handle release(CreateEventW(nullptr, TRUE, FALSE, L"Qorvenix release"));
    std::size_t noted = 0;
    // Nothing is started where no `lines` are to be noted.
    const auto run = [&](const std::wstring& each, std::size_t lines) {
        CAPTURE(each);
        TestHost host;
        std::vector<std::wstring> statuses = {L"before"};
        host.statuses = statuses;
        host.on_pump = [&] { lines == 2 && host.pumps == 3 && SetEvent(release.get()); };
        ProgramRow row;
        row.uninstall_command = each;
        CHECK(Uninstall(row, host) == (lines != 0));
        if (lines != 0) statuses.insert(statuses.end(), {L"アンインストーラの実行中です...", L"before"});
        CHECK(host.statuses == statuses);
        if (lines == 2) CHECK(host.pumps >= 3);
        if (lines == 3) CHECK(recorder.starts(noted + 2).size() == noted + 2);  // the child still waits
        SetEvent(release.get());
        noted += lines;
        CHECK(recorder.starts(noted).size() == noted);
        ResetEvent(release.get());
    };
    for (const std::wstring& each : {command, folder.path(), folder.make_file(L"text.txt", "text"), std::wstring()})
        run(each, 0);
    REQUIRE(recorder.install(program));
    run(command, 2);
    run(batch + L" /S \"x y\"", 1);
    run(L"\"" + batch + L"\" /S \"x y\"", 1);
    // The exit code does not count, nor what the program leaves behind.
    run(program + L" --exit 259", 1);
    run(program + L" --start", 3);

    // Where a start needs elevation the system asks, and the program is waited for; a refusal ends quietly.
    const ImportHook refused(
        "CreateProcessW",
        +[](LPCWSTR, LPWSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD flags, LPVOID, LPCWSTR,
            LPSTARTUPINFOW, LPPROCESS_INFORMATION) WINAPI -> BOOL {
            CHECK((flags & CREATE_DEFAULT_ERROR_MODE) != 0);
            SetLastError(740);
            return FALSE;
        });
    run(program + L" /S --hold", 2);
    const ImportHook cancelled(
        "ShellExecuteExW", +[](SHELLEXECUTEINFOW* record) WINAPI -> BOOL {
            CHECK(record->lpVerb == std::wstring(L"runas"));
            SetLastError(ERROR_CANCELLED);
            return FALSE;
        });
    run(command, 0);

    const auto starts = recorder.starts_after_a_while();
    REQUIRE(starts.size() == 10);
    CHECK((starts[0].command_line == command && starts[0].show == L"2"));
    CHECK(starts[2].command_line.ends_with(L"uninst.exe\" batch /S \"x y\""));
    CHECK(starts[3].command_line == starts[2].command_line);
    CHECK(starts[7].command_line == L"released");
    CHECK((starts[8].command_line.ends_with(L" /S --hold") && starts[8].show == L"2"));
}
