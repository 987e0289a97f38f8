// What is opened for the user: folders, files, URLs, registry keys and programs.
#include "programs/detail_link.h"
#include "programs/program_actions.h"
#include "programs/registry_editor.h"
#include "startup/modAPI.h"
#include "startup/startup_actions.h"
#include "win/open_with_shell.h"

#include "support/import_hook.h"
#include "support/recorder.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "win/com_ptr.h"

#include <functional>

using namespace programs;

TEST_CASE("a caption leads to a URL of a harmless scheme, to a file that is there, or to a tagged registry key") {
    TestFolder folder(L"detail links");
    const std::wstring help = folder.make_file(L"the help.html");
    const struct {
        std::wstring caption;
        LinkKind kind = LinkKind::None;
        std::wstring target = {};
    } cases[] = {
        {L"HTTPS://example.com/a b", LinkKind::Url, L"HTTPS://example.com/a b"},
        {L"mailto:help@example.com", LinkKind::Url, L"mailto:help@example.com"},
        {L"javascript:alert(1)"},
        {L"file:///C:/windows/regedit.exe"},
        {L"\"" + help + L"\" /open", LinkKind::File, help},
        {folder.path(), LinkKind::File, folder.path()},
        {help + L"<リンク切れ>"},
        {L"(全ユーザー)SOFTWARE\\Run", LinkKind::RegistryKey, L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Run"},
        {L" (個別ユーザー)SOFTWARE\\Run"},
        {L"03-1234-5678"},
        {std::wstring(5000, L'x')},
    };
    for (const auto& each : cases) {
        CAPTURE(each.caption);
        const DetailLink link = FindDetailLink(each.caption);
        CHECK((link.kind == each.kind && link.target == each.target));
        CHECK(LooksLikeLink(each.caption) == (each.kind != LinkKind::None));
    }
    // Nobody looks at a server because a row is shown.
    static int looks = 0;
    const auto look = +[](LPCWSTR) WINAPI -> int { return ++looks; };
    const ImportHook attributes("GetFileAttributesW", look);
    const ImportHook exists("PathFileExistsW", look);
    for (const wchar_t* on_network : {L"\"\\\\no.such.server\\share\\x.exe\" -x", L"/\\no.such.server\\share\\a",
                                      L"\"\\/no.such.server/share/a\" /S", L" //no.such.server\\share\\x.exe /S"})
        CHECK(LooksLikeLink(on_network));
    CHECK(looks == 0);
}

TEST_CASE("what is opened starts with its exact command line, by programs of the system's folders and no planted one") {
    const win::ComApartment apartment;
    Recorder recorder;
    TestFolder folder(L"opened here");
    const std::wstring program = folder.own(L"some program.exe");
    const std::wstring help = folder.make_file(L"the help.html");
    for (const wchar_t* name : {L"explorer.exe", L"regedit.exe", L"winebrowser.exe", L"only in system.exe"})
        REQUIRE(recorder.install(name));
    for (const std::wstring& path : {program, folder.own(L"planted.exe"), folder.own(L"regedit.exe")})
        REQUIRE(recorder.install(path));
    SetCurrentDirectoryW(folder.path().c_str());
    constexpr wchar_t kSettings[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit";
    std::optional<TestKey> settings(std::in_place, HKEY_CURRENT_USER, kSettings);
    TestHost host;
    std::vector<std::wstring> history;
    const auto open_folder = [](const std::wstring& install_folder) {
        ProgramRow row;
        row.install_folder = install_folder;
        row.empty_install_folder = install_folder.empty();
        OpenInstallFolder(row);
    };
    // The program that starts, its show command and command line; the status text; where the registry editor opens.
    std::size_t opened = 0;
    const auto started_by = [&](const auto& open) {
        host.statuses.clear();
        RegDeleteValueW(settings->get(), L"LastKey");
        open();
        const auto starts = recorder.starts(++opened);
        REQUIRE(starts.size() == opened);
        const auto& [path, show, command_line] = starts.back();
        const std::wstring name = PathFindFileNameW(path.c_str());
        wchar_t last_key[64] = {};
        DWORD size = sizeof last_key;
        RegQueryValueExW(settings->get(), L"LastKey", nullptr, nullptr, reinterpret_cast<BYTE*>(last_key), &size);
        const bool in_system = path.ends_with(L"\\syswow64\\" + name) || path.ends_with(L"\\system32\\" + name);
        return (in_system ? L"SYS\\" : L"") + name + L" " + show + L" " + command_line + L"|" + host.status_text() +
               L"|" + last_key;
    };
    CHECK(started_by([&] { open_folder(L""); }) == L"SYS\\explorer.exe 1 explorer.exe \"||");
    CHECK(started_by([&] { open_folder(L"\"C:\\x y\""); }) == L"SYS\\explorer.exe 1 explorer.exe \"C:\\x y\"||");
    CHECK(started_by([&] { startup::OpenStartupLocation(folder.path()); }) ==
          L"SYS\\explorer.exe 1 \"explorer.exe\" " + folder.path() + L"||");
    CHECK(started_by([&] { OpenDetailLink(help, host); }) ==
          L"SYS\\explorer.exe 1 explorer.exe /e,/select," + help + L"|ファイル位置をエクスプローラで開きます...|");
    CHECK(started_by([&] { OpenDetailLink(L"(個別ユーザー)ソフト ", host); }) ==
          L"SYS\\regedit.exe 1 "
          L"regedit|指定パスをレジストリエディタで開きます...|コンピュータ\\HKEY_CURRENT_USER\\ソフト ");
    CHECK(started_by([&] { startup::OpenStartupLocation(L"(全ユーザー)x"); }) ==
          L"SYS\\regedit.exe 1 regedit||コンピュータ\\HKEY_LOCAL_MACHINE\\x");
    CHECK(started_by([&] { startup::OpenStartupLocation(L"no folder"); }) == L"SYS\\regedit.exe 1 regedit||");
    // The tree's top stands in front once; a typed path loses its leading blanks only.
    CHECK(started_by([&] { OpenTypedRegistryPath(L"  コンピュータ\\x ", history); }) ==
          L"SYS\\regedit.exe 1 regedit||コンピュータ\\x ");
    CHECK(started_by([&] { OpenTypedRegistryPath(L"HKLM\\コンピュータ\\", history); }) ==
          L"SYS\\regedit.exe 1 regedit||コンピュータ\\HKLM\\コンピュータ\\");
    CHECK(history == std::vector<std::wstring>{L"HKLM\\コンピュータ\\", L"コンピュータ\\x "});
    CHECK(started_by([&] {
              OpenDetailLink(L"https://example.com/", host);
          }).ends_with(L" \"https://example.com/\"|指定URLを開きます...|"));
    CHECK(started_by([&] {
              win::OpenWithShell(nullptr, L"only in system.exe", {L"\0", 1}, {L"\0", 1});
          }).starts_with(L"SYS\\only in system.exe 5 "));
    CHECK(started_by([&] { win::OpenWithShell(nullptr, program, L"a \"b\"", L""); }) ==
          L"some program.exe 5 \"" + program + L"\" a \"b\"||");
    CHECK(started_by([&] { startup::RunProgram(program, L"a \"b\"", win::WindowStyle::MinimisedWithFocus); }) ==
          L"some program.exe 2 \"" + program + L"\" a \"b\"||");

    // In full, in the system's code page.
    StoreLastKey(std::wstring(5000, L'あ'));
    DWORD size = 0;
    RegQueryValueExA(settings->get(), "LastKey", nullptr, nullptr, nullptr, &size);
    CHECK(size == 13 + 10001);
    settings.reset();
    StoreLastKey(L"HKEY_LOCAL_MACHINE");
    CHECK_FALSE(KeyExists(HKEY_CURRENT_USER, kSettings));

    // What opens nothing. The Explorer would start a file that is given as an install folder.
    host.statuses.clear();
    for (const wchar_t* nowhere : {L"03-1234", L"javascript:alert(1)", L""})
        OpenDetailLink(nowhere, host);
    OpenRegistryEditorAt(L"", host);
    CHECK((OpenTypedRegistryPath(L"   ", history).empty() && history.size() == 2 && host.statuses.empty()));
    const std::wstring file = win::SystemDirectory() + L"\\cmd.exe";
    for (const std::wstring& value : {L"\"" + file + L"\"", file + L" .", win::ReplaceAll(file, L"\\", L"/"),
                                      std::wstring(L"%SystemRoot%\\regedit.exe"), L"C:\\x\" \"" + file,
                                      std::wstring(L"file:///C:/windows/regedit.exe")})
        open_folder(value);
    OpenInstallFolder({});
    for (const std::wstring& gone : {std::wstring(L"planted.exe"), std::wstring(), folder.path() + L"\\missing.exe"})
        CHECK_FALSE(win::OpenWithShell(nullptr, gone, L"", L""));
    CHECK(startup::RunProgram(L"planted.exe", L"", win::WindowStyle::Normal) == 0);
    CHECK(recorder.starts_after_a_while().size() == opened);
    SetCurrentDirectoryW(L"C:\\");
}

TEST_CASE("the history holds the fourteen most recent paths, each once") {
    std::vector<std::wstring> history;
    for (const int number : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 16, 5})
        RememberRegistryPath(win::ToText(number), history);
    // One entered again takes no other's place.
    REQUIRE(history.size() == 14);
    CHECK((history[0] == L"5" && history[1] == L"16" && history[2] == L"15"));
    CHECK((history[11] == L"6" && history[12] == L"4" && history[13] == L"3"));
}
