#include "startup/seeded_startup.h"

#include "startup/command_path.h"
#include "startup/path.h"
#include "startup/shell_files.h"
#include "startup/startup_menu.h"
#include "startup/startup_shortcut.h"

#include "support/automation_double.h"
#include "support/import_hook.h"
#include "support/native_names.h"
#include "support/throw_away.h"
#include "ui/drop_files.h"
#include "win/folders.h"
#include "win/system_text.h"
#include "win/text.h"

using namespace startup;

namespace {

using Texts = std::vector<std::wstring>;

// The Japanese shell's details, which Wine's has not: it is its own folder and item and counts what it is asked.
struct DetailsShell {
    int headers_read = 0;
    int details_read = 0;
    Texts folders;
    std::wstring name;

    doubles::RegisteredClass registered{
        L"Shell.Application", [this](const auto&) {
            win::ComPtr<doubles::Object> shell = doubles::MakeObject();
            shell->method(L"Namespace", [this, own = shell.get()](const auto& arguments, win::Variant& result) {
                folders.emplace_back(arguments[0]->bstrVal);
                return result = win::Variant(own), S_OK;
            });
            shell->method(L"ParseName", [this, own = shell.get()](const auto& arguments, win::Variant& result) {
                name = arguments[0]->bstrVal;
                return result = win::Variant(own), S_OK;
            });
            shell->method(L"GetDetailsOf", [this](const auto& arguments, win::Variant& result) {
                const int column = arguments[1]->lVal;
                const bool header = arguments[0]->vt != VT_DISPATCH;
                ++(header ? headers_read : details_read);
                if (header) result = win::Variant(column == 3 || column == 34 ? L"ファイルの説明" : L"更新日時");
                if (header) return column <= 40 ? S_OK : E_INVALIDARG;
                Sleep(20);  // as slow as a real one can be
                return result = win::Variant(name + (column == 34 ? L" の説明" : L" の何か")), S_OK;
            });
            return shell;
        }};
};

int shortcuts_asked = 0;  // of script hosts

// A script host that is its own shortcut, which answers with `target` or fails; without a `code` there is none.
doubles::RegisteredClass ScriptHost(std::optional<HRESULT> code, const std::wstring& target) {
    return {L"WScript.Shell", [code, target](const auto&) {
                win::ComPtr<doubles::Object> host = doubles::MakeObject();
                host->method(L"CreateShortcut", [host = host.get()](const auto&, win::Variant& result) {
                    ++shortcuts_asked;
                    return result = win::Variant(host), S_OK;
                });
                host->method(L"TargetPath", [code, target](const auto&, win::Variant& result) {
                    return result = win::Variant(target), *code;
                });
                return code ? host : win::ComPtr<doubles::Object>();
            }};
}

const std::wstring kUserRun = std::wstring(L"(個別ユーザー)") + kRunKey;

// Target, working folder and show command of the shortcut `name` of the user's startup folder, which is deleted.
Texts TakeLink(const SeededStartup& startup, const std::wstring& name) {
    const std::wstring path = startup.user_folder.path() + L"\\" + name;
    win::ComPtr<IShellLinkW> link;
    CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.put_void());
    if (FAILED(link.as<IPersistFile>(IID_IPersistFile)->Load(path.c_str(), STGM_READ))) return {};
    wchar_t target[MAX_PATH] = {};
    wchar_t folder[MAX_PATH] = {};
    link->GetPath(target, MAX_PATH, nullptr, 0);
    link->GetWorkingDirectory(folder, MAX_PATH);
    // As it stands in the file: Wine does not read it back.
    const std::string content = ContentOf(path);
    DeleteFileW(path.c_str());
    return {target, folder, std::to_wstring(content[0x3C])};
}

void CheckShortcuts() {
    SeededStartup startup;
    TestHost& host = startup.host;
    const std::wstring target = startup.programs.make_file(L"対象 file.v2.exe");
    CreateStartupShortcut(target, host);
    REQUIRE(host.questions.size() == 1);
    CHECK(host.questions[0].text ==
          L"スタートアップフォルダに\r\n" + target + L"\r\nのショートカットを作成します。よろしいですか？");
    CHECK(host.questions[0].title == L"ショートカットの作成");
    CreateStartupShortcut(target, host);  // overwrites it
    // One that lies in the folder already and is dropped stays as it is, without a question.
    const std::wstring& folder = startup.user_folder.path();
    wchar_t short_name[MAX_PATH] = {};
    GetShortPathNameW(folder.c_str(), short_name, MAX_PATH);
    for (const std::wstring& each : {win::LowerCase(folder), folder + L"\\.", std::wstring(short_name)})
        CreateStartupShortcut(each + L"\\対象 file.v2.LNK", host);
    CHECK(host.questions.size() == 2);
    CHECK(TakeLink(startup, L"対象 file.v2.lnk") == Texts{target, startup.programs.path(), L"4"});
    // Variables are expanded in the target, not in its folder; a name without a dot leaves only the ending.
    CreateStartupShortcut(L"%windir%\\regedit.exe", host);
    CHECK(TakeLink(startup, L"regedit.lnk") == Texts{win::WindowsDirectory() + L"\\regedit.exe", L"%windir%", L"4"});
    CreateStartupShortcut(startup.programs.make_file(L"no ending"), host);
    CHECK_FALSE(TakeLink(startup, L".lnk").empty());
    host.answer = ui::Answer::Cancel;
    CreateStartupShortcut(target, host);
    startup.run();
    CHECK(startup.list.list.count() == 0);
}

}  // namespace

TEST_CASE("both folders and the keys are listed in their order, with targets, places, descriptions and icons") {
    SeededStartup startup;
    DetailsShell shell;
    const std::wstring program = startup.programs.make_file(L"常駐 1.exe");
    const std::wstring other = win::WindowsDirectory() + L"\\regedit.exe";
    const std::wstring gone = startup.programs.path() + L"\\regedit.exe";
    const std::wstring& user = startup.user_folder.path();
    const std::wstring& common = startup.common_folder.path();
    MakeLink(startup.user_folder.own(L"a.lnk"), program);
    MakeLink(startup.user_folder.own(L"b.LNK"), gone);
    const std::wstring batch = startup.user_folder.make_file(L"c.lnk.bat");
    startup.user_folder.make_file(L"desktop.ini", "", FILE_ATTRIBUTE_HIDDEN);
    startup.user_folder.make_folder(L"folder.lnk");
    MakeLink(startup.common_folder.own(L"common.lnk"), other);
    const std::wstring quoted = L"\"" + program + L"\" /background";
    startup.machine_run.set_text({}, L"v1", quoted);
    startup.machine_run.set_text({}, L"v2", gone + L" -x", REG_EXPAND_SZ);
    startup.machine_once.set_text({}, L"w1", L"%windir%\\a.exe");
    // For a 32-bit program Wine takes such a key, wherever it lies, for the one without the node.
    if (win::kIs64Bit) {
        startup.machine.set_text(kRunKey32, L"v1", gone);
        startup.machine.set_text(kRunOnceKey32, L"w1", gone);
    }
    startup.user_run.set_text({}, L"v1", L"regedit.exe -m");

    CHECK(kRunOnceKey == std::wstring(L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce"));
    CHECK(kRunOnceKey32 == std::wstring(L"SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\RunOnce"));
    startup.list.list.add_row(L"old");
    std::vector<Texts> expected = {
        {L"a.lnk", program, user, L"常駐 1.exe の説明"},
        {L"b.LNK", gone + L"<リンク切れ>", user, L""},
        {L"c.lnk.bat", batch, user, L""},
        {L"common.lnk", other, common, L"regedit.exe の説明"},
        {L"v1", quoted, std::wstring(L"(全ユーザー)") + kRunKey, L"常駐 1.exe の説明"},
        {L"v2", gone + L" -x", std::wstring(L"(全ユーザー)") + kRunKey, L""},
        {L"w1", L"%windir%\\a.exe", std::wstring(L"(全ユーザー)") + kRunOnceKey, L""},
        {L"v1", gone, std::wstring(L"(全ユーザー)") + kRunKey32, L""},
        {L"w1", gone, std::wstring(L"(全ユーザー)") + kRunOnceKey32, L""},
        {L"v1", L"regedit.exe -m", std::wstring(L"(個別ユーザー)") + kRunKey, L"regedit.exe の説明"},
    };
    if (!win::kIs64Bit) expected.erase(expected.end() - 3, expected.end() - 1);
    const int icon = GetSystemIconIndex(other);
    REQUIRE(icon != 0);
    for (int refresh = 0; refresh < 2; ++refresh) {
        startup.run();
        CHECK(startup.list.rows() == expected);
        for (const int row : {1, 3, 5, 6, startup.list.list.count() - 1})
            CHECK(startup.list.image(row) == (row == 3 || row > 6 ? icon : 0));
    }
    // Once a folder and a fill, both columns of that name once a row.
    CHECK(shell.folders ==
          Texts{startup.programs.path(), win::WindowsDirectory(), startup.programs.path(), win::WindowsDirectory()});
    CHECK((shell.headers_read == 2 * 2 * 41 && shell.details_read == 2 * 4 * 2));
    CHECK(startup.host.pumps > 2 * (2 + 6));  // not only behind each folder and key
    // A close that waits ends the fill behind the first folder.
    startup.host.closing = true;
    startup.run();
    CHECK(startup.list.list.count() < 5);
}

TEST_CASE("the script host tells a shortcut's target; where it cannot, the shell does") {
    REQUIRE_THROW_AWAY();
    SeededStartup startup;
    const std::wstring link = startup.user_folder.own(L"a.lnk");
    MakeLink(link, L"C:\\stored.exe");
    const std::wstring program = startup.programs.make_file(L"told.exe");
    const struct {
        std::optional<HRESULT> code;
        std::wstring told;
        std::wstring target;
    } answers[] = {
        {S_OK, program, program},
        {S_OK, L"", L"C:\\stored.exe"},
        {S_OK, L"C:\\st?red.exe", L"C:\\stored.exe"},  // with characters lost
        {E_NOTIMPL, program, L"C:\\stored.exe"},
        {{}, L"", L"C:\\stored.exe"},
    };
    for (const auto& each : answers) {
        const auto host = ScriptHost(each.code, each.told);
        CHECK(GetShortcutTarget(link) == each.target);
        CHECK(GetShortcutTarget(link + L".exe") == L"");
    }

    // Told to lie among the 32-bit programs.
    const std::wstring told = win::GetSpecialFolderPath(CSIDL_PROGRAM_FILES) + L"\\only 64-bit.exe";
    MakeLink(link, told);
    const std::wstring native = throw_away::Variable(L"ProgramW6432");
    SetEnvironmentVariableW(L"ProgramW6432", startup.programs.path().c_str());
    CHECK(GetShortcutTarget(link) == told);
    const std::wstring only_64 = startup.programs.make_file(L"only 64-bit.exe");
    CHECK(GetShortcutTarget(link) == only_64);
    SetEnvironmentVariableW(L"ProgramW6432", native.c_str());

    // Only the 64-bit system folder has it.
    const std::wstring folder = win::WindowsDirectory() + (win::kIs64Bit ? L"\\system32" : L"\\Sysnative");
    const std::wstring target = win::SystemDirectory() + L"\\only 64-bit.exe";
    MakeLink(link, target);
    win::File file(CreateFileW((folder + L"\\only 64-bit.exe").c_str(), GENERIC_WRITE, FILE_SHARE_DELETE, nullptr,
                               CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    REQUIRE(win::IsFile(target) == win::kIs64Bit);
    startup.run();
    CHECK(startup.list.column(StartupColumn::Value) == Texts{target});
    file.reset();
    startup.run();
    CHECK(startup.list.column(StartupColumn::Value) == Texts{target + L"<リンク切れ>"});
}

TEST_CASE("a command line is reduced to the program that it starts") {
    TestFolder folder(L"日本 語-path");
    const std::wstring program = folder.make_file(L"a -b.exe");
    const std::wstring plain = folder.make_file(L"plain.exe");
    const std::wstring programs = win::GetSpecialFolderPath(CSIDL_PROGRAM_FILES);
    const std::wstring native = throw_away::Variable(L"ProgramW6432");
    const std::pair<std::wstring, std::wstring> cases[] = {
        // Quotes end it, whatever follows.
        {L"\"" + program + L"\" /background", program},
        {L"\"C:\\gone\\a b.exe", L"C:\\gone\\a b.exe"},
        {L"\"\"", ResolveCommandPath(L"\"")},
        // A path that exists is taken whole; arguments with slash or hyphen are cut, others stay.
        {program, program},
        {plain + L"  -min  /x", plain},
        {L"  C:\\gone.exe -a /b", L"C:\\gone.exe"},
        {plain + L" file.txt", plain + L" file.txt"},
        // The file exists only with the blank and hyphen that the cut removes.
        {program + L" /s", program.substr(0, program.find(L" -"))},
        // Only a leading folder of programs is expanded, only the Windows folder is searched.
        {L"\"%PROGRAMFILES%\\gone\\app.exe\" x", programs + L"\\gone\\app.exe"},
        {L"%ProgramFiles(x86)%\\app.exe", L"%ProgramFiles(x86)%\\app.exe"},
        {L"C:%programfiles%\\app.exe", L"C:%programfiles%\\app.exe"},
        {L"explorer.exe /n -x", win::WindowsDirectory() + L"\\explorer.exe"},
        {L"msiexec.exe /x", L"msiexec.exe"},  // lies in the system folder
    };
    for (const auto& [line, path] : cases)
        CHECK(ResolveCommandPath(line) == path);
    CHECK(JoinPath(L"C:\\a\\", L"\\b") == L"C:\\a\\\\b");  // three in a row: one pair made single

    // On 64-bit Windows a program may have meant the folder of either kind.
    REQUIRE_THROW_AWAY();
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

TEST_CASE("a drive or share that is not there cannot be reached, and a server that failed is not asked again") {
    static std::vector<std::wstring> asked;
    const ImportHook hook(
        "PathFileExistsW", +[](LPCWSTR path) WINAPI -> BOOL { return asked.emplace_back(path), FALSE; });
    FileProbe probe;
    for (const wchar_t* there : {L"C:\\gone\\b.exe", L"::{20D04FE0-3AEA-1069-A2D8-08002B30309D}"})
        CHECK(probe.reachable(there));
    CHECK_FALSE(probe.reachable(L"X:\\no drive"));
    asked.clear();
    CHECK_FALSE(probe.exists(L"//server/late/a.exe"));
    CHECK_FALSE(probe.reachable(L"\\\\Server\\Late\\b\\..\\a.exe"));
    CHECK_FALSE(probe.reachable(L"/\\SERVER/another/a.exe"));
    CHECK(asked == std::vector<std::wstring>{L"//server/late/a.exe"});
}

TEST_CASE("an entry is deleted from its own place after a question, and nothing beside it") {
    REQUIRE_THROW_AWAY();
    SeededStartup startup;
    const ui::ListView& list = startup.list.list;
    TestHost& host = startup.host;
    const auto plant = [&] {
        // The second name differs from the first only outside the system's code page.
        for (const TestKey* key :
             {&startup.machine_run, &startup.machine_once, &startup.user_run, &startup.user_once}) {
            key->set_text({}, L"Foo", L"foo.exe");
            key->set_text({}, L"Foo\x2122", L"other.exe");
        }
        native::SetText(startup.user_run.get(), std::wstring(L"Foo\0x", 5), L"hidden.exe");
        for (const TestFolder* folder : {&startup.user_folder, &startup.common_folder}) {
            for (const wchar_t* name : {L"dup.txt", L" dup.txt", L"dup.txt ", L" dup.txt. ", L"dup.txt."}) {
                const std::wstring path = L"\\\\?\\" + folder->path() + L"\\" + name;
                win::File(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr)).reset();
            }
        }
    };
    const auto listed = [&] {
        startup.run();
        Texts rows;
        for (int row = 0; row < list.count(); ++row) {
            const StartupEntry entry = *StartupEntryAt(list, row);
            rows.push_back(entry.location + L"|" + entry.file_name + L"|" + entry.value);
        }
        return rows;
    };
    plant();
    const Texts all = listed();
    REQUIRE(all.size() == 19);
    for (int row = 0; row < 19; ++row) {
        Texts left = all;
        left.erase(left.begin() + row);
        CAPTURE(all);
        const StartupEntry entry = *StartupEntryAt(list, row);
        CHECK(entry.name == win::TrimBlanks(entry.file_name));
        StartMenuState menu;
        menu.open(entry);
        CHECK(menu.is_enabled(StartItem::Properties) == !IsRegistryEntry(entry.location));
        host.answer = ui::Answer::Cancel;
        CHECK_FALSE(DeleteStartupEntry(entry, {}, host));
        CHECK(host.questions.back().text == L"「" + entry.name + L"」を削除します。\r\nよろしいですか？");
        CHECK(host.questions.back().title == L"Qorvenix");
        CHECK(listed() == all);
        host.answer = ui::Answer::Ok;
        CHECK(DeleteStartupEntry(entry, {}, host));
        // One whose name goes on behind a NUL stays, and so does that of the shown name.
        CHECK(listed() == (entry.has_embedded_nul ? all : left));
        menu.open(entry);
        CHECK_FALSE(menu.is_enabled(StartItem::Properties));
        plant();
        listed();
    }
    CHECK(DeleteStartupEntry({L"Gone", {}, kUserRun, {}}, {}, host));
    CHECK(DeleteStartupEntry({L"gone.lnk", {}, L"C:\\no such folder", {}}, {}, host));
    CHECK_FALSE(DeleteStartupEntry({L"Foo", {}, kUserRun + L"\\gone", {}}, {}, host));
    for (const std::wstring& each : all)
        DeleteFileW((L"\\\\?\\" + win::ReplaceAll(each.substr(0, each.rfind(L'|')), L"|", L"\\")).c_str());
}

TEST_CASE("the menu of the startup list follows the row under the mouse, or the selected one for the key") {
    TestFolder folder(L"start menu");
    folder.make_file(L"there.lnk");
    folder.make_folder(L"folder.lnk");
    StartMenuState menu;
    // The enabled items and the caption of item 5.
    const auto open = [&](const std::wstring& location, const wchar_t* name) {
        menu.open(name ? std::optional(StartupEntry{name, {}, location, {}}) : std::nullopt);
        std::wstring enabled;
        for (const ui::MenuItem& item : kStartMenu) {
            if (item.caption != std::wstring(L"-") && menu.is_enabled(item.index))
                enabled += std::to_wstring(item.index) + L" ";
        }
        return enabled + menu.open_caption();
    };
    CHECK(menu.open_caption() == std::wstring(L"開く(&O)"));
    menu.press(true);
    CHECK(open(folder.path(), L"there.lnk") == L"1 3 5 10 99 スタートアップフォルダを開く(&O)");
    menu.key(true);
    for (const wchar_t* without_file : {L"gone.lnk", L"folder.lnk"})
        CHECK(open(folder.path(), without_file) == L"1 3 5 99 スタートアップフォルダを開く(&O)");
    CHECK(open(kUserRun, L"Value") == L"1 3 5 99 レジストリパスを開く(&O)");
    // Without a location item 5 goes off and keeps its caption; only the next press on a row brings it back.
    CHECK(open({}, L"Value") == L"1 3 99 レジストリパスを開く(&O)");
    CHECK(open(folder.path(), L"there.lnk") == L"1 3 10 99 スタートアップフォルダを開く(&O)");
    menu.press(true);
    menu.key(false);
    CHECK(open({}, nullptr) == L"99 スタートアップフォルダを開く(&O)");
}

TEST_CASE("a shortcut in the startup folder is made by the script host, or by the shell where that is better") {
    const win::ComApartment apartment;
    CheckShortcuts();
    {
        const auto none = ScriptHost({}, {});
        CheckShortcuts();
    }
    // One that would lose a character is not asked. Wine's own reading of the file loses it, too.
    const auto fails = ScriptHost(E_FAIL, {});
    shortcuts_asked = 0;
    SeededStartup startup;
    CreateStartupShortcut(L"C:\\plain.exe", startup.host);
    CreateStartupShortcut(L"C:\\caf\u00e9\\plain.exe", startup.host);
    CHECK(shortcuts_asked == 1);
    const std::string content = ContentOf(startup.user_folder.path() + L"\\plain.lnk");
    CHECK(content.find(std::string("f\0\xE9\0", 4)) != content.npos);
    CHECK_FALSE(TakeLink(startup, L"plain.lnk").empty());
}

TEST_CASE("of three dropped files the first counts") {
    constexpr std::wstring_view kNames(L"C:\\first.exe\0C:\\second.exe\0C:\\third.exe\0", 40);
    const HGLOBAL memory = GlobalAlloc(GHND, sizeof(DROPFILES) + (kNames.size() + 1) * sizeof(wchar_t));
    auto* drop = static_cast<DROPFILES*>(GlobalLock(memory));
    *drop = {sizeof(DROPFILES), {}, FALSE, TRUE};
    kNames.copy(reinterpret_cast<wchar_t*>(drop + 1), kNames.size());
    GlobalUnlock(memory);
    CHECK(ui::TakeFirstDroppedFile(reinterpret_cast<WPARAM>(memory)) == L"C:\\first.exe");
}
