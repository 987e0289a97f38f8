#include "seeded_scan.h"

#include "programs/current_user.h"
#include "programs/modReg.h"
#include "programs/program_details.h"
#include "win/folders.h"
#include "win/system_text.h"

#include "support/import_hook.h"
#include "support/leaks.h"
#include "support/native_names.h"

#include <algorithm>

using namespace programs;
using ui::ListView;

namespace {

using Texts = std::vector<std::wstring>;

constexpr wchar_t kCommand[] = L"C:\\x\\unins.exe /S";
constexpr wchar_t kMicrosoft[] = L"Microsoft Corporation";

}  // namespace

TEST_CASE("a registry value is a string, a number, or told to be neither, in a key that may not be written, too") {
    const TestKey key(HKEY_CURRENT_USER, L"Software\\QorvenixTest\\value");
    const auto read = [&](const wchar_t* name, const std::wstring& below = {}) {
        const auto value = ReadRegistryValue(HKEY_CURRENT_USER, key.path() + below, name, L"otherwise");
        const auto* const text = std::get_if<std::wstring>(&value);
        return text ? *text : std::to_wstring(std::get<std::uint32_t>(value));
    };
    key.set_text({}, L"longest", std::wstring(127, L'版'));
    key.set_text({}, L"too long", std::wstring(128, L'x'));
    key.set_bytes({}, L"odd", REG_SZ, std::as_bytes(std::span<const char, 7>("a\0\0\0c\0b", 7)));
    key.set_number({}, L"number", 0xFFFFFFFF);
    key.set_text({}, L"other", L"%windir%", REG_EXPAND_SZ);
    const ImportHook hook(
        "RegOpenKeyExA", +[](HKEY root, LPCSTR path, DWORD options, REGSAM access, PHKEY opened) WINAPI -> LONG {
            if ((access & KEY_SET_VALUE) != 0) return ERROR_ACCESS_DENIED;
            return RegOpenKeyExW(root, win::FromAnsi(path).c_str(), options, access, opened);
        });
    CHECK((read(L"longest") == std::wstring(127, L'版') && read(L"odd") == L"a" && read(L"number") == L"4294967295"));
    CHECK((read(L"too long") == L"otherwise" && read(L"missing") == L"otherwise"));
    CHECK((read(L"other") == kUndefinedDataType && read(L"odd", L"\\none") == kKeyOpenError));
}

TEST_CASE("subkey names come whole in the registry's order; those that come and go meanwhile hide no other") {
    static const TestKey key(HKEY_CURRENT_USER, L"Software\\QorvenixTest\\subkeys");
    Texts lasting = {L" ", L"A", L"b"};
    for (int number = 100; number < 140; ++number)
        lasting.push_back(L"m" + std::to_wstring(number));
    lasting.emplace_back(255, L'キ');
    std::for_each(lasting.rbegin(), lasting.rend(), [](const std::wstring& name) { key.make(name); });
    CHECK(EnumerateSubkeyNames(HKEY_CURRENT_USER, key.path() + L"\\") == lasting);

    static decltype(RegEnumKeyExW)* enumerate = nullptr;
    static int calls = 0;
    const ImportHook hook(
        "RegEnumKeyExW",
        +[](HKEY opened, DWORD index, LPWSTR name, LPDWORD length, LPDWORD reserved, LPWSTR type, LPDWORD size,
            PFILETIME time) WINAPI -> LONG {
            // What lies before shifts all that follows, to and fro, and never comes to rest.
            if (++calls % 8 == 4) key.make(L"a");
            if (calls % 8 == 0) SHDeleteKeyW(key.get(), L"a");
            return enumerate(opened, index, name, length, reserved, type, size, time);
        });
    enumerate = hook.original<decltype(RegEnumKeyExW)>();
    Texts names = EnumerateSubkeyNames(key.get(), L"");
    std::erase(names, L"a");
    std::ranges::sort(names);
    CHECK(names == lasting);
}

TEST_CASE("the lists hold exactly what is registered, in the registry's order, after every refresh") {
    const std::wstring longest(255, L'株');
    const struct {
        const wchar_t* key;  // in the order of the registry
        const wchar_t* name;
        std::wstring publisher;
        bool is_update = false;
    } entries[] = {
        {L" ", L"blank key", L""},
        {L"a", L"\xD800 lone\t\xDC00\n", longest},
        {L"KB1", L"by its key", kMicrosoft, true},
        {L"kb2", L"lower-case key", kMicrosoft},
        {L"KB3", L"lower-case publisher (KB3)", L"microsoft"},
        {L"x4", L"Hotfix (kB4)", L"The Microsofties", true},
        {L"x5 KB", L"Visual Basic KB5", kMicrosoft},
    };
    SeededScan scan;
    std::vector<const TestKey*> keys = {&scan.machine, &scan.machine32, &scan.user};
    if (!win::kIs64Bit) keys.erase(keys.begin() + 1);
    std::vector<Texts> program_rows, update_rows;
    for (const TestKey* key : keys) {
        for (const auto& each : entries) {
            key->set_text(each.key, L"DisplayName", each.name);
            key->set_text(each.key, L"Publisher", each.publisher);
            key->set_text(each.key, L"UninstallString", kCommand);
            (each.is_update ? update_rows : program_rows)
                .push_back({each.name, each.publisher, {}, {}, {}, kCommand, each.key, {}});
        }
    }
    scan.user.set_text(L"z1", L"UninstallString", L"");
    scan.machine.set_text(L"a", L"InstallLocation", L"");
    scan.user.set_text(L"z2", L"UninstallString", kCommand);
    scan.user.set_number(L"z2", L"SystemComponent", 1);
    scan.user.set_text(L"z3", L"UninstallString", kCommand);
    scan.user.set_text(L"z3", L"DisplayName", longest + L"式");
    scan.user.set_text(L"z3", L"InstallDate", L"20110203");
    scan.user.set_text(L"z3", L"InstallLocation", L"C:\\電\\");
    scan.user.set_number(L"z3", L"EstimatedSize", 0);
    scan.user.set_number(L"z3", L"SystemComponent", 0);
    program_rows.push_back({{}, {}, L"0.00MB", L"20110203", L"C:\\電\\", kCommand, L"z3", L"00000.00"});
    for (int refresh = 1; refresh <= 2; ++refresh) {
        scan.run();
        CHECK(scan.programs.rows() == program_rows);
        CHECK(scan.updates.rows() == update_rows);
        CHECK(scan.host.pumps == refresh * std::ssize(keys));
    }
    // A folder that is told to be none is another thing than one that is not told.
    for (const auto& [row, told] : {std::pair(0, false), {1, true}, {2, false}})
        CHECK(ProgramAt(scan.programs.list, row)->empty_install_folder == told);
    scan.options.show_system_components = true;
    scan.run();
    CHECK(scan.programs.list.count() == std::ssize(program_rows) + 1);
    scan.sid.clear();
    scan.run();
    CHECK(scan.programs.list.count() == 5 * (std::ssize(keys) - 1));
}

TEST_CASE("a key that vanishes during the scan is left out, and so is one whose name cannot be opened") {
    SeededScan scan;
    for (const wchar_t* key : {L"a", L"b", L"c"})
        scan.machine.set_text(key, L"UninstallString", kCommand);
    const native::Key unreachable(scan.machine.get(), std::wstring(L"b\0x", 3));
    REQUIRE(native::SetText(unreachable.get(), L"UninstallString", kCommand));
    // It would open the key that has the part before the NUL for its name, once more.
    REQUIRE(EnumerateSubkeyNames(scan.machine.get(), L"").size() == 3);
    scan.host.on_pump = [&] { RegDeleteKeyW(scan.machine.get(), L"b"); };
    scan.run();
    CHECK(scan.programs.column(ProgramColumn::RegistryKey) == Texts{L"a", L"c"});
}

TEST_CASE("the user's own programs lie below the security identifier of the token") {
    const TestKey mark(HKEY_CURRENT_USER, L"Software\\QorvenixTest\\mark");
    CHECK(KeyExists(HKEY_USERS, CurrentUserSid() + L"\\Software\\QorvenixTest\\mark"));
}

TEST_CASE("rows show the icon of the file that their entry names, and refreshes keep nothing of them") {
    const std::wstring regedit = win::WindowsDirectory() + L"\\regedit.exe";
    const struct {
        const wchar_t* key;
        std::wstring command;
        std::wstring icon;
        int image;  // in the order of the first rows of each
    } rows[] = {
        {L"1", L"C:\\gone.exe", L"none", ListView::kNoImage},
        {L"2", L"C:\\gone.exe", L"\"" + regedit + L"\",0", 0},
        {L"3", L"MsiExec.exe /X{90120000-0015-0411-0000-0000000FF1CE}", L"none", 1},
        {L"4", L"\"" + regedit + L"\" /uninstall", L"none", 0},
        {L"5", regedit, {}, ListView::kNoImage},
        {L"6", regedit, L"\"", ListView::kNoImage},
        {L"7", L"C:\\gone.exe", win::SystemDirectory() + L"\\MsiExec.exe,-3,x", 1},
        {L"KB", L"C:\\gone.exe", regedit, 0},
    };
    SeededScan scan;
    for (const auto& each : rows) {
        scan.machine.set_text(each.key, L"UninstallString", each.command);
        if (each.icon != L"none") scan.machine.set_text(each.key, L"DisplayIcon", each.icon);
    }
    scan.machine.set_text(L"KB", L"Publisher", L"Microsoft");
    for (const bool shown : {false, true, true, false}) {
        scan.options.show_icons = shown;
        scan.run();
        for (int row = 0; row < 8; ++row) {
            const TestList& list = row < 7 ? scan.programs : scan.updates;
            CHECK(list.image(row % 7) == (shown ? rows[row].image : ListView::kNoImage));
            CHECK((ListView_GetImageList(list.list.window(), LVSIL_SMALL) == (shown ? scan.icons.get() : nullptr)));
        }
        CHECK(ImageList_GetImageCount(scan.icons.get()) == (shown ? 2 : 0));
    }
    scan.options.show_icons = true;
    if (throw_away::OnWine()) CheckHoldsOnToNothing(20, 100, 64, [&] { scan.run(); });
}

TEST_CASE("a forced uninstall asks, and removes the row's own key of the machine and nothing else") {
    SeededScan scan;
    const auto add = [](const TestKey& key, const std::wstring& tag, std::initializer_list<const wchar_t*> names) {
        for (const wchar_t* name : names) {
            key.set_text(name, L"DisplayName", tag + name);
            key.set_text(name, L"UninstallString", L"gone.exe");
        }
    };
    // The second name is the first in the system's code page.
    add(scan.machine, L"強制 ", {L"Name", L"Name\x2122", L"Parent", L"Parent\\child", L"Same"});
    add(scan.machine32, L"32 ", {L"Same"});
    add(scan.user, L"個人 ", {L"Own", L"Same"});
    scan.run();
    const auto force = [&](const wchar_t* name) { return ForcedUninstall(scan.row(name), scan.sid, {}, scan.host); };
    const auto left = [&] {
        std::wstring all;
        for (const TestKey* key : {&scan.machine, &scan.machine32, &scan.user}) {
            for (const std::wstring& name : EnumerateSubkeyNames(key->get(), L""))
                all += name + L" ";
            all += L"| ";
        }
        return all;
    };

    scan.host.answer = ui::Answer::Cancel;
    CHECK_FALSE(force(L"強制 Name"));
    REQUIRE(scan.host.questions.size() == 1);
    CHECK(scan.host.questions[0].text ==
          L"「強制 Name」を強制アンインストールしますか？\r\n※注意：本機能はレジストリの削除のみを行い、\r\n"
          L"\u3000\u3000\u3000\u3000一覧からプログラム名を削除する機能です");
    CHECK(scan.host.questions[0].title == L"Qorvenix");
    scan.host.answer = ui::Answer::Ok;
    CHECK_FALSE(ForcedUninstall({}, scan.sid, {}, scan.host));
    CHECK(scan.host.questions.size() == 1);
    CHECK(left() == L"Name Name\x2122 Parent Same | Same | Own Same | ");

    // A key with subkeys stays, a user's own too, even beside one of the machine's.
    for (const wchar_t* name : {L"強制 Name\x2122", L"強制 Parent", L"個人 Own", L"個人 Same"})
        CHECK(force(name));
    CHECK(left() == L"Name Parent Same | Same | Own Same | ");
    if (win::kIs64Bit) {
        CHECK(force(L"32 Same"));
        CHECK(left() == L"Name Parent Same | | Own Same | ");
        add(scan.machine32, L"32 ", {L"Same"});
    }
    CHECK(force(L"強制 Same"));
    CHECK(left() == L"Name Parent | Same | Own Same | ");
    // It vanishes while the question is open, and the list is emptied.
    scan.host.on_question = [&] {
        RegDeleteKeyW(scan.machine.get(), L"Name");
        scan.programs.list.clear();
    };
    const ProgramRow own = scan.row(L"個人 Own");
    CHECK(force(L"強制 Name"));
    CHECK(left() == L"Parent | Same | Own Same | ");
    // Where the machine has no such key at all the user's goes.
    SHDeleteKeyW(HKEY_CURRENT_USER, scan.machine.path().c_str());
    CHECK(ForcedUninstall(own, scan.sid, {}, scan.host));
    CHECK(EnumerateSubkeyNames(scan.user.get(), L"") == Texts{L"Same"});
}

TEST_CASE("details come from the machine's key, from the user's where that is missing, and have at most 256 bytes") {
    const SeededScan scan;
    const auto read = [](const wchar_t* key, const wchar_t* sid = SeededScan::kSid,
                         UninstallPlace place = UninstallPlace::Machine) {
        const ProgramDetails details = ReadProgramDetails(place, key, sid);
        return details.help_link + L"|" + details.url_info_about + L"|" + details.help_telephone;
    };
    scan.user.set_text(L"Both", L"HelpLink", L"user's");
    CHECK(read(L"Both") == L"user's||");
    CHECK(read(L"Both", L"") == L"||");
    scan.machine32.set_text(L"Both", L"HelpTelephone", L"32");
    scan.machine.set_text(L"Both", L"URLInfoAbout", L"%windir%", REG_EXPAND_SZ);
    CHECK(read(L"Both") == L"|%windir%|");
    if (win::kIs64Bit) CHECK(read(L"Both", L"", UninstallPlace::Machine32) == L"||32");

    scan.machine.set_text(L"Full", L"HelpLink", std::wstring(255, L'a'));
    scan.machine.set_text(L"Full", L"URLInfoAbout", std::wstring(127, L'あ') + L"b");
    const std::string without_end(256, '1');
    scan.machine.set_bytes(L"Full", L"HelpTelephone", REG_BINARY, std::as_bytes(std::span(without_end)));
    CHECK(read(L"Full") == std::wstring(255, L'a') + L"|" + std::wstring(127, L'あ') + L"b|" + std::wstring(256, L'1'));
    scan.machine.set_text(L"Full", L"HelpLink", std::wstring(256, L'a'));
    scan.machine.set_text(L"Full", L"URLInfoAbout", std::wstring(128, L'あ'));
    scan.machine.set_bytes(L"Full", L"HelpTelephone", REG_SZ, {});
    CHECK(read(L"Full") == L"||");
}
