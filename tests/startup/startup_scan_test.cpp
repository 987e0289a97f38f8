#include "startup/seeded_startup.h"

#include "startup/command_path.h"
#include "startup/shell_files.h"

#include "support/automation_double.h"
#include "support/import_hook.h"
#include "support/throw_away.h"
#include "win/folders.h"

using startup::StartupColumn;

namespace {

constexpr wchar_t kMachineRun[] = L"(全ユーザー)SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t kMachineRunOnce[] = L"(全ユーザー)SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
constexpr wchar_t kMachineRun32[] = L"(全ユーザー)SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t kUserRun[] = L"(個別ユーザー)SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";

// The Japanese shell's details: Wine's own has none. Counts what it is asked.
class DetailsShell {
public:
    int headers_read = 0;
    int details_read = 0;
    DWORD delay = 0;  // milliseconds that a detail takes
    std::vector<std::wstring> folders;

private:
    static constexpr int kFirst = 3;
    static constexpr int kLater = 34;

    HRESULT details(const doubles::Arguments& arguments, win::Variant& result) {
        REQUIRE(arguments.size() == 2);
        const int column = arguments[1]->lVal;
        if (arguments[0]->vt != VT_DISPATCH || !arguments[0]->pdispVal) {
            ++headers_read;
            result = win::Variant(column == kFirst || column == kLater ? L"ファイルの説明" : L"更新日時");
            return column <= 40 ? S_OK : E_INVALIDARG;
        }
        ++details_read;
        Sleep(delay);
        const std::wstring name = win::Object::from(win::Variant(arguments[0]->pdispVal)).get(L"Name").text();
        result = win::Variant(name + (column == kLater ? L" の説明" : L" の何か"));
        return S_OK;
    }

    win::ComPtr<doubles::Object> folder(const std::wstring& path) {
        folders.push_back(path);
        win::ComPtr<doubles::Object> made = doubles::MakeObject();
        made->method(L"GetDetailsOf",
                     [this](const auto& arguments, auto& result) { return details(arguments, result); })
            .method(L"ParseName", [path](const doubles::Arguments& arguments, win::Variant& result) {
                const std::wstring name = arguments[0]->bstrVal;
                const auto item = doubles::MakeObject();
                item->property(L"Name", win::Variant(name));
                if (PathFileExistsW((path + L"\\" + name).c_str())) result = win::Variant(item.get());
                return S_OK;
            });
        return made;
    }

    doubles::RegisteredClass registered_{
        L"Shell.Application", [this] {
            win::ComPtr<doubles::Object> shell = doubles::MakeObject();
            shell->method(L"Namespace", [this](const doubles::Arguments& arguments, win::Variant& result) {
                result = win::Variant(folder(arguments[0]->bstrVal).get());
                return S_OK;
            });
            return shell;
        }};
};

// A script host whose shortcuts answer with `target`, or fail.
doubles::RegisteredClass ScriptHost(HRESULT code, const std::wstring& target) {
    return {L"WScript.Shell", [code, target] {
                win::ComPtr<doubles::Object> host = doubles::MakeObject();
                host->method(L"CreateShortcut", [code, target](const doubles::Arguments&, win::Variant& result) {
                    win::ComPtr<doubles::Object> shortcut = doubles::MakeObject();
                    shortcut->method(L"TargetPath", [code, target](const doubles::Arguments&, win::Variant& path) {
                        path = win::Variant(target);
                        return code;
                    });
                    result = win::Variant(shortcut.get());
                    return S_OK;
                });
                return host;
            }};
}

}  // namespace

TEST_CASE("both folders and the keys are listed in their order, with targets, places and descriptions") {
    SeededStartup startup;
    DetailsShell shell;
    shell.delay = 20;
    const std::wstring program = startup.programs.make_file(L"常駐 1.exe");
    const std::wstring other = startup.programs.make_file(L"other.exe");
    const std::wstring gone = startup.programs.path() + L"\\gone.exe";
    const std::wstring user = startup.user_folder.path();
    const std::wstring common = startup.common_folder.path();

    MakeLink(startup.user_folder.own(L"a.lnk"), program);
    MakeLink(startup.user_folder.own(L"b.LNK"), gone);
    const std::wstring batch = startup.user_folder.make_file(L"c.lnk.bat");
    startup.user_folder.make_file(L"desktop.ini", "", FILE_ATTRIBUTE_HIDDEN);
    startup.user_folder.make_folder(L"folder.lnk");
    MakeLink(startup.common_folder.own(L"common.lnk"), other);
    const std::wstring quoted = L"\"" + program + L"\" /background";
    startup.machine_run.set_text(L"", L"v1", quoted);
    startup.machine_run.set_text(L"", L"v2", gone + L" -x", REG_EXPAND_SZ);
    startup.machine_once.set_text(L"", L"w1", L"%windir%\\a.exe");
    startup.machine_run32.set_text(L"", L"v1", gone);
    startup.machine_once32.set_text(L"", L"w1", gone);
    startup.user_run.set_text(L"", L"v1", quoted);

    startup.list.list.add_row(L"old");
    std::vector<std::vector<std::wstring>> expected = {
        {L"a.lnk", program, user, L"常駐 1.exe の説明"},
        {L"b.LNK", gone + L"<リンク切れ>", user, L""},
        {L"c.lnk.bat", batch, user, L""},
        {L"common.lnk", other, common, L"other.exe の説明"},
        {L"v1", quoted, kMachineRun, L"常駐 1.exe の説明"},
        {L"v2", gone + L" -x", kMachineRun, L""},
        {L"w1", L"%windir%\\a.exe", kMachineRunOnce, L""},
        {L"v1", gone, kMachineRun32, L""},
        {L"w1", gone, std::wstring(kMachineRun32) + L"Once", L""},
        {L"v1", quoted, kUserRun, L"常駐 1.exe の説明"},
    };
    if (!win::kIs64Bit) expected.erase(expected.end() - 3, expected.end() - 1);
    for (int refresh = 0; refresh < 3; ++refresh) {
        startup.run();
        CHECK(startup.list.rows() == expected);
    }
    // Once a folder and a fill, both columns of that name once a row.
    CHECK(shell.folders == std::vector<std::wstring>(3, startup.programs.path()));
    CHECK(shell.headers_read == 3 * 41);
    CHECK(shell.details_read == 3 * 4 * 2);
    CHECK(startup.host.pumps > 3 * (2 + 4));  // not only behind each folder and key
    // A close that waits ends the fill behind the first folder.
    startup.host.closing = true;
    startup.run();
    CHECK(startup.list.list.count() < 5);
}

TEST_CASE("a row shows the icon of the file that it starts") {
    SeededStartup startup;
    const std::wstring regedit = startup::ResolveCommandPath(L"regedit.exe");
    startup.machine_run.set_text(L"", L"v1", L"regedit.exe -m");
    startup.machine_run.set_text(L"", L"v2", L"C:\\gone\\regedit.exe -m");
    startup.machine_run.set_text(L"", L"v3", L"\"");
    MakeLink(startup.user_folder.own(L"a.lnk"), regedit);
    MakeLink(startup.user_folder.own(L"b.lnk"), L"C:\\gone\\regedit.exe");
    startup.run();
    const int icon = startup::GetSystemIconIndex(regedit);
    REQUIRE(icon != 0);
    REQUIRE(startup.list.list.count() == 5);
    for (int row = 0; row < 4; ++row)
        CHECK(startup.list.image(row) == (row % 2 == 0 ? icon : 0));
}

TEST_CASE("the script host tells a shortcut's target; where it cannot, the shell does") {
    SeededStartup startup;
    const std::wstring link = startup.user_folder.own(L"a.lnk");
    MakeLink(link, L"C:\\stored.exe");
    const struct {
        HRESULT code;
        const wchar_t* told;
        const wchar_t* target;
    } answers[] = {
        {S_OK, L"C:\\windows\\regedit.exe", L"C:\\windows\\regedit.exe"},
        {S_OK, L"C:\\told.exe", L"C:\\stored.exe"},
        {S_OK, L"", L"C:\\stored.exe"},
        {S_OK, L"C:\\st?red.exe", L"C:\\stored.exe"},  // with characters lost
        {E_NOTIMPL, L"", L"C:\\stored.exe"},
    };
    for (const auto& each : answers) {
        const auto host = ScriptHost(each.code, each.told);
        CHECK(startup::GetShortcutTarget(link) == each.target);
        CHECK(startup::GetShortcutTarget(link + L".exe") == L"");
    }
    SUBCASE("told to lie among the 32-bit programs") {
        const std::wstring told = win::GetSpecialFolderPath(CSIDL_PROGRAM_FILES) + L"\\only 64-bit.exe";
        MakeLink(link, told);
        const auto host = ScriptHost(S_OK, told);
        wchar_t native[MAX_PATH] = {};
        GetEnvironmentVariableW(L"ProgramW6432", native, MAX_PATH);
        SetEnvironmentVariableW(L"ProgramW6432", startup.programs.path().c_str());
        CHECK(startup::GetShortcutTarget(link) == told);
        const std::wstring program = startup.programs.make_file(L"only 64-bit.exe");
        CHECK(startup::GetShortcutTarget(link) == program);
        SetEnvironmentVariableW(L"ProgramW6432", native);
    }
    SUBCASE("only the 64-bit system folder has it") {
        REQUIRE_THROW_AWAY();
        const std::wstring native =
            std::wstring(L"C:\\windows\\") + (win::kIs64Bit ? L"system32" : L"Sysnative") + L"\\only 64-bit.exe";
        win::File(CreateFileW(native.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr)).reset();
        const std::wstring target = L"C:\\windows\\system32\\only 64-bit.exe";
        REQUIRE(win::IsFile(native));
        REQUIRE(win::IsFile(target) == win::kIs64Bit);
        const auto host = ScriptHost(S_OK, target);
        MakeLink(link, target);
        startup.run();
        CHECK(startup.list.column(StartupColumn::Value) == std::vector<std::wstring>{target});
        DeleteFileW(native.c_str());
        startup.run();
        CHECK(startup.list.column(StartupColumn::Value) == std::vector<std::wstring>{target + L"<リンク切れ>"});
    }
    SUBCASE("there is none") {
        const doubles::RegisteredClass none(L"WScript.Shell", [] { return win::ComPtr<doubles::Object>(); });
        CHECK(startup::GetShortcutTarget(link) == L"C:\\stored.exe");
    }
}

TEST_CASE("a drive or share that is not there cannot be reached, and a server that failed is not asked again") {
    static std::vector<std::wstring> asked;
    static decltype(PathFileExistsW)* original = nullptr;
    const ImportHook hook(
        "PathFileExistsW", +[](LPCWSTR path) WINAPI -> BOOL {
            asked.emplace_back(path);
            return original(path);
        });
    REQUIRE(hook);
    original = hook.original<decltype(PathFileExistsW)>();
    startup::FileProbe probe;
    CHECK(probe.reachable(L"C:\\gone\\b.exe"));
    CHECK(probe.reachable(L"::{20D04FE0-3AEA-1069-A2D8-08002B30309D}"));
    CHECK_FALSE(probe.reachable(L"X:\\no drive"));
    asked.clear();
    CHECK_FALSE(probe.exists(L"//server/late/a.exe"));
    CHECK_FALSE(probe.reachable(L"\\\\Server\\Late\\b\\..\\a.exe"));
    CHECK_FALSE(probe.reachable(L"/\\SERVER/another/a.exe"));
    CHECK(asked == std::vector<std::wstring>{L"//server/late/a.exe"});
}
