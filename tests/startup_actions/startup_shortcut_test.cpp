#include "startup/startup_shortcut.h"

#include "startup/shell_files.h"
#include "support/automation_double.h"
#include "support/deletion_place.h"
#include "support/import_hook.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/throw_away.h"
#include "ui/drop_files.h"
#include "win/com_ptr.h"
#include "win/folders.h"
#include "win/system_text.h"

#include <doctest/doctest.h>

using namespace startup;

namespace {

struct Link {
    std::wstring target;
    std::wstring working_folder;
    DWORD show = 0;
};

// The shortcut `name` of the user's startup folder, read and deleted.
std::optional<Link> TakeLink(const std::wstring& name) {
    const std::wstring path = win::GetSpecialFolderPath(CSIDL_STARTUP) + L"\\" + name;
    win::ComPtr<IShellLinkW> link;
    CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.put_void());
    const auto file = link.as<IPersistFile>(IID_IPersistFile);
    if (FAILED(file->Load(path.c_str(), STGM_READ))) return {};
    Link found;
    wchar_t text[MAX_PATH] = {};
    link->GetPath(text, MAX_PATH, nullptr, 0);
    found.target = text;
    link->GetWorkingDirectory(text, MAX_PATH);
    found.working_folder = text;
    // As it stands in the file: Wine does not read it back.
    const std::string content = ContentOf(path);
    content.copy(reinterpret_cast<char*>(&found.show), sizeof found.show, 0x3C);
    DeleteFileW(path.c_str());
    return found;
}

std::size_t CountStartupFiles() { return deletion::Names(win::GetSpecialFolderPath(CSIDL_STARTUP)).size(); }

void CheckShortcuts() {
    REQUIRE_THROW_AWAY();
    TestFolder folder(L"shortcut targets");
    const std::wstring target = folder.make_file(L"対象 file.v2.exe");
    TestHost host;

    CreateStartupShortcut(target, host);
    REQUIRE(host.questions.size() == 1);
    CHECK(host.questions[0].text ==
          L"スタートアップフォルダに\r\n" + target + L"\r\nのショートカットを作成します。よろしいですか？");
    CHECK(host.questions[0].title == L"ショートカットの作成");
    // An existing shortcut is overwritten.
    CreateStartupShortcut(target, host);
    CHECK(CountStartupFiles() == 1);
    // One that lies in the folder already and is dropped stays as it is, without a question.
    const std::wstring startup = win::GetSpecialFolderPath(CSIDL_STARTUP);
    wchar_t short_name[MAX_PATH] = {};
    GetShortPathNameW(startup.c_str(), short_name, MAX_PATH);
    for (const std::wstring& each : {startup, win::LowerCase(startup), startup + L"\\.", std::wstring(short_name)})
        CreateStartupShortcut(each + L"\\対象 file.v2.LNK", host);
    CHECK(host.questions.size() == 2);
    auto link = TakeLink(L"対象 file.v2.lnk");
    REQUIRE(link);
    CHECK(win::LowerCase(link->target) == win::LowerCase(target));
    CHECK(link->working_folder == folder.path());
    CHECK(link->show == 4);

    // Variables are expanded in the target, not in its folder; a name without a dot leaves only the ending.
    CreateStartupShortcut(L"%windir%\\regedit.exe", host);
    link = TakeLink(L"regedit.lnk");
    REQUIRE(link);
    CHECK(win::LowerCase(link->target) == win::LowerCase(win::WindowsDirectory()) + L"\\regedit.exe");
    CHECK(link->working_folder == L"%windir%");
    CreateStartupShortcut(folder.make_file(L"no ending"), host);
    CHECK(TakeLink(L".lnk"));

    host.answer = ui::Answer::Cancel;
    CreateStartupShortcut(target, host);
    CHECK(CountStartupFiles() == 0);
}

// The memory that a drop message carries.
WPARAM MakeDrop(const std::wstring& names) {
    const std::size_t bytes = sizeof(DROPFILES) + (names.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GHND, bytes);
    auto* drop = static_cast<DROPFILES*>(GlobalLock(memory));
    drop->pFiles = sizeof(DROPFILES);
    drop->fWide = TRUE;
    CopyMemory(drop + 1, names.data(), names.size() * sizeof(wchar_t));
    GlobalUnlock(memory);
    return reinterpret_cast<WPARAM>(memory);
}

}  // namespace

TEST_CASE("A shortcut in the startup folder, made by the script host, or by the shell where scripts are switched off") {
    const win::ComApartment apartment;
    CheckShortcuts();
    const doubles::RegisteredClass no_scripts(L"WScript.Shell", [] { return win::ComPtr<doubles::Object>(); });
    CheckShortcuts();
}

TEST_CASE("Where the script host would lose a character the shell writes the shortcut") {
    REQUIRE_THROW_AWAY();
    const win::ComApartment apartment;
    static int asked = 0;
    const doubles::RegisteredClass host_double(L"WScript.Shell", [] {
        win::ComPtr<doubles::Object> made = doubles::MakeObject();
        made->method(L"CreateShortcut", [](const doubles::Arguments&, win::Variant&) { return ++asked, E_FAIL; });
        return made;
    });
    TestFolder folder(L"caf\u00e9");
    TestHost host;
    CreateStartupShortcut(L"C:\\plain.exe", host);
    CHECK(asked == 1);
    const std::wstring target = folder.make_file(L"plain.exe");
    CreateStartupShortcut(target, host);
    CHECK(asked == 1);
    // Wine's own reading of it loses the character, the file has it.
    const std::string content = ContentOf(win::GetSpecialFolderPath(CSIDL_STARTUP) + L"\\plain.lnk");
    CHECK(content.find(std::string("f\0\xE9\0", 4)) != content.npos);
    CHECK(TakeLink(L"plain.lnk"));
    // Variables that cannot be expanded stay, and do no harm.
    const ImportHook fails(
        "ExpandEnvironmentStringsW", +[](LPCWSTR, LPWSTR, DWORD) WINAPI -> DWORD { return 0; });
    REQUIRE(fails);
    CreateStartupShortcut(target, host);
    CHECK(TakeLink(L"plain.lnk"));
}

TEST_CASE("Of three dropped files the first counts") {
    const win::ComApartment apartment;
    TestHost host;
    const std::wstring names(L"C:\\first.exe\0C:\\second.exe\0C:\\third.exe\0\0", 41);
    CreateStartupShortcut(ui::TakeFirstDroppedFile(MakeDrop(names)), host);
    CHECK(CountStartupFiles() == 1);
    CHECK(TakeLink(L"first.lnk"));
    CHECK(ui::TakeFirstDroppedFile(MakeDrop(std::wstring(1, L'\0'))) == std::wstring());
}
