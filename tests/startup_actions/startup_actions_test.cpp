#include "startup/startup_actions.h"

#include "startup/modAPI.h"
#include "startup/shell_files.h"
#include "startup/startup_menu.h"
#include "startup/startup_scan.h"
#include "support/native_names.h"
#include "support/recorder.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "support/test_list.h"
#include "win/com_ptr.h"
#include "win/folders.h"
#include "win/system_text.h"
#include "win/text.h"

#include <doctest/doctest.h>

#include <algorithm>

using namespace startup;

namespace {

constexpr wchar_t kRun[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t kRunOnce[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
constexpr wchar_t kRegedit[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit";

struct List {
    List() { scan(); }
    void scan() { ScanStartup(rows.list, host); }
    std::optional<StartupEntry> select(const std::wstring& name, const std::wstring& location) {
        for (int row = 0; row < rows.list.count(); ++row) {
            if (rows.list.cell(row, StartupColumn::Name) != name ||
                rows.list.cell(row, StartupColumn::Location) != location)
                continue;
            rows.list.select(row);
            return StartupEntryAt(rows.list, rows.list.selected());
        }
        return {};
    }
    bool has(const std::wstring& name, const std::wstring& location) { return select(name, location).has_value(); }

    win::ComApartment apartment;
    TestHost host;
    TestList rows{kStartupColumns};
};

// A file in a startup folder, deleted at the end.
struct StartupFile {
    StartupFile(int csidl, const std::wstring& name)
        : folder(win::GetSpecialFolderPath(csidl)), path(folder + L"\\" + name) {
        REQUIRE_THROW_AWAY();
        const win::File file(CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    }
    ~StartupFile() { DeleteFileW(path.c_str()); }

    std::wstring folder;
    std::wstring path;
};

// The text stored as LastKey, "" when there is none.
std::string LastKey() {
    char text[512] = {};
    DWORD size = sizeof text;
    SHGetValueA(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit", "LastKey", nullptr,
                text, &size);
    return text;
}

}  // namespace

TEST_CASE("An entry is deleted from each of the six places, after a question, and nothing beside it") {
    REQUIRE_THROW_AWAY();
    const TestKey machine_run(HKEY_LOCAL_MACHINE, kRun);
    const TestKey machine_once(HKEY_LOCAL_MACHINE, kRunOnce);
    const TestKey user_run(HKEY_CURRENT_USER, kRun);
    const TestKey user_once(HKEY_CURRENT_USER, kRunOnce);
    const StartupFile own(CSIDL_STARTUP, L"delete me.lnk");
    const StartupFile common(CSIDL_COMMON_STARTUP, L"delete me.lnk");
    const StartupFile kept(CSIDL_STARTUP, L"keep me.lnk");
    const std::pair<const TestKey&, std::wstring> keys[] = {{machine_run, std::wstring(L"(全ユーザー)") + kRun},
                                                            {machine_once, std::wstring(L"(全ユーザー)") + kRunOnce},
                                                            {user_run, std::wstring(L"(個別ユーザー)") + kRun},
                                                            {user_once, std::wstring(L"(個別ユーザー)") + kRunOnce}};
    // The second name differs from the first only outside the system's code page.
    for (const auto& each : keys) {
        each.first.set_text(L"", L"Foo", L"foo.exe");
        each.first.set_text(L"", L"Foo\x2122", L"other.exe");
    }
    List list;
    REQUIRE(list.rows.list.count() == 11);

    for (std::size_t place = 0; place < std::size(keys); ++place) {
        CAPTURE(place);
        const auto entry = list.select(L"Foo\x2122", keys[place].second);
        REQUIRE(entry);
        CHECK(entry->value == L"other.exe");
        list.host.answer = ui::Answer::Cancel;
        CHECK_FALSE(DeleteStartupEntry(*entry, {}, list.host));
        CHECK(ValueExists(keys[place].first.get(), L"Foo\x2122"));
        list.host.answer = ui::Answer::Ok;
        CHECK(DeleteStartupEntry(*entry, {}, list.host));
        for (std::size_t other = 0; other < std::size(keys); ++other) {
            CHECK(ValueExists(keys[other].first.get(), L"Foo"));
            CHECK(ValueExists(keys[other].first.get(), L"Foo\x2122") == (other > place));
        }
    }
    CHECK(list.host.questions.back().text == L"「Foo\x2122」を削除します。\r\nよろしいですか？");
    CHECK(list.host.questions.back().title == L"Qorvenix");

    for (const StartupFile* file : {&own, &common}) {
        const auto entry = list.select(L"delete me.lnk", file->folder);
        REQUIRE(entry);
        CHECK((win::IsFile(common.path) && DeleteStartupEntry(*entry, {}, list.host) && !win::IsFile(file->path)));
    }
    CHECK(win::IsFile(kept.path));
    list.scan();
    CHECK(list.rows.list.count() == 5);
    CHECK(list.has(L"keep me.lnk", kept.folder));
    CHECK(list.has(L"Foo", keys[3].second));
}

TEST_CASE("A row of the startup folder means its own file, whatever blanks and dots its name begins or ends with") {
    REQUIRE_THROW_AWAY();
    const std::wstring folder = win::GetSpecialFolderPath(CSIDL_STARTUP);
    const std::vector<std::wstring> names = {L"dup.txt", L" dup.txt", L"dup.txt ", L" dup.txt. ", L"dup.txt."};
    const auto path = [&](const std::wstring& name) { return L"\\\\?\\" + folder + L"\\" + name; };
    for (const std::wstring& name : names)
        REQUIRE(win::File(CreateFileW(path(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr)));
    List list;
    REQUIRE(list.rows.list.count() == std::ssize(names));
    std::vector<std::wstring> left = names;
    for (int row = 0; row < std::ssize(names); ++row) {
        list.rows.list.select(row);
        const auto selected = StartupEntryAt(list.rows.list, list.rows.list.selected());
        REQUIRE(selected);
        CHECK(selected->name == win::TrimBlanks(selected->file_name));
        CHECK(selected->value == folder + L"\\" + selected->name);
        StartMenuState menu;
        menu.open(selected);
        CHECK(menu.is_enabled(StartItem::Properties));
        CHECK(DeleteStartupEntry(*selected, {}, list.host));
        menu.open(selected);
        CHECK_FALSE(menu.is_enabled(StartItem::Properties));
        CHECK(std::erase(left, selected->file_name) == 1);
        for (const std::wstring& name : names)
            CHECK(win::IsFile(path(name)) == (std::ranges::find(left, name) != left.end()));
    }
}

TEST_CASE(
    "A value whose name goes on behind a NUL, one that vanishes behind the question, and a key that is not there") {
    REQUIRE_THROW_AWAY();
    const std::wstring location = std::wstring(L"(個別ユーザー)") + kRun;
    {
        const TestKey key(HKEY_CURRENT_USER, kRun);
        key.set_text(L"", L"Foo", L"foo.exe");
        REQUIRE(native::SetText(key.get(), std::wstring(L"Foo\0x", 5), L"hidden.exe"));
        List list;
        for (const wchar_t* value : {L"hidden.exe", L"foo.exe"}) {
            list.rows.list.select(list.rows.list.find(StartupColumn::Value, value));
            const auto entry = StartupEntryAt(list.rows.list, list.rows.list.selected());
            REQUIRE((entry && entry->name == L"Foo"));
            CHECK(DeleteStartupEntry(*entry, {}, list.host));
            // That of the shown name is spared.
            CHECK(ValueExists(key.get(), L"Foo") == entry->has_embedded_nul);
        }
        CHECK(DeleteStartupEntry({L"Foo", {}, location, {}}, {}, list.host));
    }
    TestHost host;
    CHECK_FALSE(DeleteStartupEntry({L"Foo", {}, location, {}}, {}, host));
    CHECK(DeleteStartupEntry({L"gone.lnk", {}, L"C:\\no such folder", {}}, {}, host));
}

TEST_CASE("The location opens in the Explorer or in the registry editor, programs by their quoted names") {
    Recorder recorder;
    REQUIRE(recorder.install_in_system(L"explorer.exe"));
    REQUIRE(recorder.install_in_system(L"regedit.exe"));
    TestFolder folder(L"a startup folder");
    {
        const TestKey settings(HKEY_CURRENT_USER, kRegedit);
        OpenStartupLocation(folder.path());
        auto starts = recorder.starts(1);
        REQUIRE(starts.size() == 1);
        CHECK(Recorder::is_in_system(starts[0].program, L"explorer.exe"));
        CHECK(starts[0].command_line == L"\"explorer.exe\" " + folder.path());
        CHECK(starts[0].show == L"1");
        CHECK(LastKey() == "");

        OpenStartupLocation(L"(全ユーザー)SOFTWARE\\Run");
        CHECK(win::FromAnsi(LastKey()).ends_with(L"\\HKEY_LOCAL_MACHINE\\SOFTWARE\\Run"));
        OpenStartupLocation(L"(個別ユーザー)SOFTWARE\\Run");
        CHECK(win::FromAnsi(LastKey()).ends_with(L"\\HKEY_CURRENT_USER\\SOFTWARE\\Run"));
        OpenStartupLocation(L"no folder");
        CHECK(win::FromAnsi(LastKey()).ends_with(L"\\HKEY_CURRENT_USER\\SOFTWARE\\Run"));
    }
    OpenStartupLocation(L"(個別ユーザー)SOFTWARE\\Run");
    CHECK(recorder.starts(5).size() == 5);
    const std::wstring program = folder.own(L"a program.exe");
    REQUIRE(recorder.install(program));
    SetCurrentDirectoryW(folder.path().c_str());
    CHECK(RunProgram(L"a program.exe", L"", win::WindowStyle::Normal) == 0);
    CHECK(RunProgram(program, L"first \"second\"", win::WindowStyle::MinimisedWithFocus) != 0);
    SetCurrentDirectoryW(L"C:\\");
    const auto starts = recorder.starts(6);
    REQUIRE(starts.size() == 6);
    CHECK(starts[4].command_line == L"regedit");
    CHECK(LastKey() == "");
    CHECK(starts[5].command_line == L"\"" + program + L"\" first \"second\"");
    CHECK(starts[5].show == L"2");
}
