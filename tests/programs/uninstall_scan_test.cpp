#include "seeded_scan.h"

#include "programs/current_user.h"
#include "programs/modReg.h"
#include "win/size_text.h"

#include "support/native_names.h"

#include <algorithm>
#include <string>

using programs::ProgramColumn;

namespace {

using Rows = std::vector<std::vector<std::wstring>>;

enum class Shown { Nowhere, Programs, Updates };

constexpr wchar_t kCommand[] = L"C:\\x\\unins.exe /S";
constexpr wchar_t kMicrosoft[] = L"Microsoft Corporation";
constexpr int kMissing = -1;

struct Seed {
    const wchar_t* key;
    Shown shown;
    const wchar_t* name;  // texts that are empty are not written
    const wchar_t* publisher = L"";
    std::int64_t kilobytes = kMissing;
    const wchar_t* size = L"";
    const wchar_t* size_key = L"";
    const wchar_t* date = L"";
    const wchar_t* folder = L"";
    int component = kMissing;
    const wchar_t* command = kCommand;
};

using enum Shown;

// In the order of the registry.
constexpr Seed kSeeds[] = {
    {L" ", Programs, L"blank key"},
    {L"a01", Programs, L"電卓〜①髙", L"株式会社", 1536, L"1.50MB", L"00001.50", L"20110203", L"C:\\電 卓\\"},
    {L"a02", Programs, L"zero", L"", 0, L"0.00MB", L"00000.00"},
    {L"a03", Programs, L"half", L"", 128, L"0.13MB", L"00000.13"},
    {L"a04", Programs, L"six digits", L"", 102400000, L"100000.00MB", L"100000.00"},
    {L"a05", Programs, L"greatest", L"", 0xFFFFFFFF, L"4194304.00MB", L"4194304.00"},
    {L"a06", Programs, L""},
    {L"a07", Nowhere, L"no command", L"", kMissing, L"", L"", L"", L"", kMissing, L""},
    {L"a08", Nowhere, L"component", L"", kMissing, L"", L"", L"", L"", 1},
    {L"a09", Programs, L"no component", L"", kMissing, L"", L"", L"", L"", 0},
    {L"a10", Programs, L"short date", L"longer than the date", kMissing, L"", L"", L"1"},
    {L"a11", Programs, L"tab\tand\nline"},
    {L"a12", Programs, L"\xD800 lone \xDC00"},
    {L"KB111111", Updates, L"by its key", kMicrosoft},
    {L"kb222222", Programs, L"lower-case key", kMicrosoft},
    {L"KB333333", Programs, L"lower-case publisher", L"microsoft"},
    {L"KB444444", Programs, L"no publisher (KB444444)"},
    {L"kb555555", Updates, L"Hotfix (kB555555)", L"The Microsofties", 1, L"0.00MB", L"00000.00"},
    {L"x KB666666", Programs, L"not at the start", kMicrosoft},
    {L"{90120000-0001}", Updates, L"Security Update (KB123456)", kMicrosoft},
    {L"{90120000-0002}", Programs, L"Visual Basic", kMicrosoft},
};

void Plant(const TestKey& key) {
    for (const Seed& seed : kSeeds) {
        key.make(seed.key);
        const auto text = [&](const wchar_t* name, std::wstring_view value) {
            if (!value.empty()) key.set_text(seed.key, name, value);
        };
        text(L"DisplayName", seed.name);
        text(L"Publisher", seed.publisher);
        text(L"InstallDate", seed.date);
        text(L"InstallLocation", seed.folder);
        text(L"UninstallString", seed.command);
        if (seed.kilobytes >= 0) key.set_number(seed.key, L"EstimatedSize", static_cast<DWORD>(seed.kilobytes));
        if (seed.component >= 0) key.set_number(seed.key, L"SystemComponent", static_cast<DWORD>(seed.component));
    }
}

Rows Expected(Shown shown) {
    Rows rows;
    for (const Seed& seed : kSeeds) {
        if (seed.shown != shown) continue;
        rows.push_back(
            {seed.name, seed.publisher, seed.size, seed.date, seed.folder, seed.command, seed.key, seed.size_key});
    }
    return rows;
}

// The places whose programs this edition lists.
constexpr int kPlaces = win::kIs64Bit ? 3 : 2;

Rows OfPlaces(const Rows& rows, int places) {
    Rows all;
    for (int place = 0; place < places; ++place)
        all.insert(all.end(), rows.begin(), rows.end());
    return all;
}

}  // namespace

TEST_CASE("the lists hold exactly what is registered, in the registry's order, after every refresh") {
    SeededScan scan;
    for (const TestKey* key : {&scan.machine, &scan.machine32, &scan.user})
        Plant(*key);
    for (int refresh = 0; refresh < 11; ++refresh) {
        scan.run();
        CHECK(scan.programs.rows() == OfPlaces(Expected(Programs), kPlaces));
        CHECK(scan.updates.rows() == OfPlaces(Expected(Updates), kPlaces));
    }
    CHECK(scan.host.pumps == 11 * kPlaces);

    scan.sid.clear();
    scan.run();
    CHECK(scan.programs.rows() == OfPlaces(Expected(Programs), kPlaces - 1));
}

TEST_CASE("system components are listed when they are asked for") {
    SeededScan scan;
    scan.machine.set_text(L"part", L"UninstallString", kCommand);
    scan.machine.set_number(L"part", L"SystemComponent", 1);
    scan.host.on_pump = [&] { scan.options.show_system_components = scan.host.pumps == kPlaces + 1; };
    scan.run();
    CHECK(scan.programs.list.count() == 0);
    scan.run();
    CHECK(scan.programs.list.count() == 1);
}

TEST_CASE("a row knows an empty installation folder from a missing one") {
    SeededScan scan;
    for (const wchar_t* key : {L"1", L"2", L"3"})
        scan.machine.set_text(key, L"UninstallString", kCommand);
    scan.machine.set_text(L"1", L"InstallLocation", L"");
    scan.machine.set_text(L"2", L"InstallLocation", L"C:\\a");
    scan.run();
    for (int row = 0; row < 3; ++row)
        CHECK(programs::ProgramTag::of(scan.programs.list.item_data(row)).empty_install_folder == (row == 0));
}

TEST_CASE("a key that vanishes during the scan is left out, and so is one whose name cannot be opened") {
    SeededScan scan;
    for (const wchar_t* key : {L"a", L"b", L"c"})
        scan.machine.set_text(key, L"UninstallString", kCommand);
    const native::Key unreachable(scan.machine.get(), std::wstring(L"b\0x", 3));
    REQUIRE(native::SetText(unreachable.get(), L"UninstallString", kCommand));
    // It would open the key that has the part before the NUL for its name, once more.
    REQUIRE(programs::EnumerateSubkeyNames(HKEY_LOCAL_MACHINE, SeededScan::kUninstall).size() == 3);
    scan.host.on_pump = [&] { RegDeleteKeyW(scan.machine.get(), L"b"); };
    scan.run();
    REQUIRE(scan.programs.list.count() == 2);
    CHECK(scan.programs.list.cell(1, ProgramColumn::RegistryKey) == L"c");
}

TEST_CASE("the user's own programs lie below the security identifier of the token") {
    const TestKey mark(HKEY_CURRENT_USER, L"Software\\QorvenixTest\\mark");
    const std::vector<std::wstring> names =
        programs::EnumerateSubkeyNames(HKEY_USERS, programs::CurrentUserSid() + L"\\Software\\QorvenixTest");
    CHECK(std::count(names.begin(), names.end(), L"mark") == 1);
}
