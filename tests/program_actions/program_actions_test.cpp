#include "programs/program_actions.h"

#include "programs/current_user.h"
#include "programs/program_details.h"
#include "programs/program_menu.h"
#include "programs/uninstall_scan.h"
#include "support/recorder.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "support/test_list.h"
#include "win/edition.h"
#include "win/folders.h"
#include "win/text.h"

#include <doctest/doctest.h>

#include <memory>

using namespace programs;

namespace {

const std::wstring kUninstall = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

// A program in an Uninstall key of its own; a null folder is not stored.
struct Entry : TestKey {
    Entry(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& command = L"gone.exe",
          const wchar_t* folder = nullptr)
        : TestKey(root, path) {
        set_text(L"", L"DisplayName", name);
        set_text(L"", L"UninstallString", command);
        if (folder) set_text(L"", L"InstallLocation", folder);
    }
};

// Both lists, filled from the real keys.
struct Lists {
    Lists() { scan(); }
    void scan() { ScanUninstallKeys({programs.list, updates.list, nullptr}, {}, CurrentUserSid(), host); }
    std::optional<ProgramRow> select(const std::wstring& name) {
        const int row = programs.list.find(ProgramColumn::Name, name);
        if (row < 0) return {};
        programs.list.select(row);
        return ProgramAt(programs.list, programs.list.selected());
    }

    TestHost host;
    TestList programs{kProgramColumns};
    TestList updates{kProgramColumns};
};

}  // namespace

TEST_CASE("An uninstall runs the stored command and asks for a scan when the program has ended") {
    Recorder recorder;
    TestFolder folder(L"an installed program");
    const std::wstring program = folder.own(L"uninst.exe");
    REQUIRE(recorder.install(program));
    const Entry entry(HKEY_LOCAL_MACHINE, kUninstall + L"Actions Test", L"動作テスト", program + L" --wait 200 /S",
                      folder.path().c_str());

    Lists lists;
    CHECK_FALSE(ProgramAt(lists.programs.list, lists.programs.list.selected()));
    const auto row = lists.select(L"動作テスト");
    REQUIRE(row);
    CHECK(row->key_name == L"Actions Test");
    CHECK(InstallFolderCommand(*row) == L"explorer.exe \"" + folder.path() + L"\"");

    // The list may be refilled meanwhile.
    lists.host.on_pump = [&] { lists.programs.list.clear(); };
    CHECK(Uninstall(*row, lists.host));
    CHECK(lists.host.pumps > 5);
    CHECK(lists.host.statuses == std::vector<std::wstring>{L"アンインストーラの実行中です...", L""});
    const auto starts = recorder.starts(1);
    REQUIRE(starts.size() == 1);
    CHECK(starts[0].command_line == program + L" --wait 200 /S");

    ProgramRow gone = *row;
    gone.uninstall_command = folder.path() + L"\\gone.exe /S";
    CHECK_FALSE((Uninstall(gone, lists.host) || Uninstall({}, lists.host)));
    CHECK(lists.host.statuses.size() == 2);
    CHECK(lists.host.questions.empty());
}

TEST_CASE("A forced uninstall asks, and removes the machine-wide key and nothing else") {
    const std::wstring sid = CurrentUserSid();
    const Entry machine(HKEY_LOCAL_MACHINE, kUninstall + L"Forced Test", L"強制");
    const Entry parent(HKEY_LOCAL_MACHINE, kUninstall + L"Forced Parent", L"親");
    parent.make(L"child");
    const Entry user(HKEY_USERS, sid + L"\\" + kUninstall + L"Forced User", L"個人");
    const Entry neighbour(HKEY_LOCAL_MACHINE, kUninstall + L"Forced Test\x2122", L"隣");
    Lists lists;
    const auto force = [&](const std::wstring& name) {
        const auto row = lists.select(name);
        return row && ForcedUninstall(*row, sid, {}, lists.host);
    };

    lists.host.answer = ui::Answer::Cancel;
    CHECK_FALSE(force(L"強制"));
    REQUIRE(lists.host.questions.size() == 1);
    CHECK(lists.host.questions[0].text ==
          L"「強制」を強制アンインストールしますか？\r\n※注意：本機能はレジストリの削除のみを行い、\r\n"
          L"\u3000\u3000\u3000\u3000一覧からプログラム名を削除する機能です");
    CHECK(lists.host.questions[0].title == L"Qorvenix");
    CHECK(KeyExists(HKEY_LOCAL_MACHINE, machine.path()));

    // The list is emptied behind the question.
    lists.host.answer = ui::Answer::Ok;
    lists.host.on_question = [&] { lists.programs.list.clear(); };
    CHECK(force(L"隣"));
    lists.host.on_question = {};
    CHECK_FALSE(KeyExists(HKEY_LOCAL_MACHINE, neighbour.path()));
    CHECK(KeyExists(HKEY_LOCAL_MACHINE, machine.path()));

    lists.scan();
    CHECK(force(L"強制"));
    CHECK_FALSE(KeyExists(HKEY_LOCAL_MACHINE, machine.path()));
    CHECK(force(L"親"));
    CHECK(KeyExists(HKEY_LOCAL_MACHINE, parent.path() + L"\\child"));
    CHECK(force(L"個人"));
    CHECK(KeyExists(HKEY_USERS, user.path()));

    lists.scan();
    CHECK(lists.programs.list.find(ProgramColumn::Name, L"強制") == -1);
    CHECK(lists.programs.list.find(ProgramColumn::Name, L"親") >= 0);
    CHECK(lists.programs.list.find(ProgramColumn::Name, L"個人") >= 0);

    // The key vanishes while the question is open; and a row without a name must not take the whole key along.
    lists.host.on_question = [&] { RegDeleteKeyW(HKEY_USERS, user.path().c_str()); };
    CHECK(force(L"個人"));
    CHECK_FALSE(ForcedUninstall({}, sid, {}, lists.host));
    CHECK(KeyExists(HKEY_LOCAL_MACHINE, kUninstall));
}

TEST_CASE("A row stands for its own key where the same name stands in several places") {
    const std::wstring sid = CurrentUserSid();
    std::vector<std::unique_ptr<Entry>> entries;
    const wchar_t* const names[] = {L"64 ビット", L"32 ビット", L"個人"};
    for (const UninstallPlace place : UninstallPlaces()) {
        const UninstallKey key = FindUninstallKey(place, sid);
        const wchar_t* const name = names[static_cast<int>(place)];
        entries.push_back(std::make_unique<Entry>(key.root, key.path + L"\\Same", name));
        entries.back()->set_text(L"", L"HelpLink", name);
    }
    const auto left = [&] {
        std::wstring found;
        for (const UninstallPlace place : UninstallPlaces()) {
            const UninstallKey key = FindUninstallKey(place, sid);
            if (KeyExists(key.root, key.path + L"\\Same")) found += names[static_cast<int>(place)][0];
        }
        return found;
    };
    Lists lists;
    std::wstring listed;
    for (const std::wstring& name : lists.programs.column(ProgramColumn::Name))
        listed += name[0];
    REQUIRE(listed == (win::kIs64Bit ? L"63個" : L"6個"));

    // What the user's own key says is shown where the machine has none of that name.
    const struct {
        const wchar_t* name;
        const wchar_t* details;
        const wchar_t* left;
    } rows[] = {
        {L"個人", L"64 ビット", L"63個"}, {L"32 ビット", L"32 ビット", L"6個"}, {L"64 ビット", L"64 ビット", L"個"}};
    for (const auto& each : rows) {
        const auto row = lists.select(each.name);
        if (!row) continue;
        CHECK(ReadProgramDetails(row->place, row->key_name, sid).help_link == each.details);
        CHECK(ForcedUninstall(*row, sid, {}, lists.host));
        CHECK(left() == (win::kIs64Bit ? each.left : win::ReplaceAll(each.left, L"3", L"")));
    }
}

TEST_CASE("The install folder opens in the Explorer, a file does not; an empty one ends the line at the quote") {
    Recorder recorder;
    REQUIRE(recorder.install_in_system(L"explorer.exe"));
    const Entry with_empty(HKEY_LOCAL_MACHINE, kUninstall + L"Folder Test", L"空のフォルダ", L"gone.exe", L"");
    const Entry without(HKEY_LOCAL_MACHINE, kUninstall + L"Folder Test 2", L"フォルダなし");
    Lists lists;
    const auto empty = lists.select(L"空のフォルダ");
    const auto none = lists.select(L"フォルダなし");
    REQUIRE(empty);
    REQUIRE(none);
    CHECK(InstallFolderCommand(*none) == std::wstring());
    OpenInstallFolder(*none);
    const auto open = [](const std::wstring& value) {
        ProgramRow row;
        row.install_folder = value;
        OpenInstallFolder(row);
    };
    // The Explorer would start it.
    const std::wstring file = win::SystemDirectory() + L"\\cmd.exe";
    for (const std::wstring& value : {file, L"\"" + file + L"\"", file + L" .", win::ReplaceAll(file, L"\\", L"/"),
                                      std::wstring(L"%SystemRoot%\\regedit.exe"), L"C:\\x\" \"" + file,
                                      std::wstring(L"file:///C:/windows/regedit.exe")}) {
        open(value);
    }
    OpenInstallFolder(*empty);
    CHECK(recorder.starts(1).size() == 1);
    open(L"\"C:\\Program Files\"");
    const auto starts = recorder.starts(2);
    REQUIRE(starts.size() == 2);
    CHECK(Recorder::is_in_system(starts[0].program, L"explorer.exe"));
    CHECK(starts[0].show == L"1");
    CHECK(starts[0].command_line == L"explorer.exe \"");
    CHECK(starts[1].command_line == L"explorer.exe \"C:\\Program Files\"");
}
