#include "seeded_scan.h"

#include "programs/current_user.h"
#include "programs/modReg.h"

#include "support/native_names.h"

#include <algorithm>
#include <map>
#include <string>

using programs::Column;

namespace {

using Rows = std::vector<std::vector<std::wstring>>;

enum class Shown { Nowhere, Programs, Updates };

struct Seed {
    const wchar_t* key;
    std::map<std::wstring, std::wstring> texts;
    std::map<std::wstring, DWORD> numbers;
    Shown shown;
    std::vector<std::wstring> cells;  // without registry key and uninstall command
};

const std::wstring kCommand = L"C:\\x\\unins.exe /S";
const std::wstring kMicrosoft = L"Microsoft Corporation";

// In the order of the registry.
const std::vector<Seed>& Seeds() {
    using Texts = std::map<std::wstring, std::wstring>;
    static const auto with = [](Texts texts) {
        texts.try_emplace(L"UninstallString", kCommand);
        return texts;
    };
    static const std::wstring whole(255, L'長');
    static const std::vector<Seed> seeds = {
        {L" ", with({{L"DisplayName", L"blank key"}}), {}, Shown::Programs, {L"blank key", L"", L"", L"", L"", L""}},
        {L"a01",
         with({{L"DisplayName", L"電卓〜①髙"},
               {L"Publisher", L"株式会社"},
               {L"InstallDate", L"20110203"},
               {L"InstallLocation", L"C:\\Program Files\\電卓\\"}}),
         {{L"EstimatedSize", 1536}},
         Shown::Programs,
         {L"電卓〜①髙", L"株式会社", L"1.50MB", L"20110203", L"C:\\Program Files\\電卓\\", L"00001.50"}},
        {L"a02",
         with({{L"DisplayName", L"zero"}}),
         {{L"EstimatedSize", 0}},
         Shown::Programs,
         {L"zero", L"", L"0.00MB", L"", L"", L"00000.00"}},
        {L"a03",
         with({{L"DisplayName", L"half"}}),
         {{L"EstimatedSize", 128}},
         Shown::Programs,
         {L"half", L"", L"0.13MB", L"", L"", L"00000.13"}},
        {L"a04",
         with({{L"DisplayName", L"six digits"}}),
         {{L"EstimatedSize", 102400000}},
         Shown::Programs,
         {L"six digits", L"", L"100000.00MB", L"", L"", L"100000.00"}},
        {L"a05",
         with({{L"DisplayName", L"greatest"}}),
         {{L"EstimatedSize", 0xFFFFFFFF}},
         Shown::Programs,
         {L"greatest", L"", L"4194304.00MB", L"", L"", L"4194304.00"}},
        {L"a06", with({}), {}, Shown::Programs, {L"", L"", L"", L"", L"", L""}},
        {L"a07", {{L"DisplayName", L"no command"}}, {}, Shown::Nowhere, {}},
        {L"a08", {{L"DisplayName", L"empty command"}, {L"UninstallString", L""}}, {}, Shown::Nowhere, {}},
        {L"a09",
         {{L"DisplayName", L"long command"}, {L"UninstallString", std::wstring(256, L'c')}},
         {},
         Shown::Nowhere,
         {}},
        {L"a10", with({{L"DisplayName", whole}}), {}, Shown::Programs, {whole, L"", L"", L"", L"", L""}},
        {L"a11", with({{L"DisplayName", whole + L"長"}}), {}, Shown::Programs, {L"", L"", L"", L"", L"", L""}},
        {L"a12", with({{L"DisplayName", L"component"}}), {{L"SystemComponent", 1}}, Shown::Nowhere, {}},
        {L"a13",
         with({{L"DisplayName", L"no component"}}),
         {{L"SystemComponent", 0}},
         Shown::Programs,
         {L"no component", L"", L"", L"", L"", L""}},
        {L"a14",
         with({{L"DisplayName", L"ab"}, {L"Publisher", L"longer than the date"}, {L"InstallDate", L"1"}}),
         {},
         Shown::Programs,
         {L"ab", L"longer than the date", L"", L"1", L"", L""}},
        {L"a15",
         with({{L"DisplayName", L"tab\tand\nline"}}),
         {},
         Shown::Programs,
         {L"tab\tand\nline", L"", L"", L"", L"", L""}},
        {L"a16",
         with({{L"DisplayName", std::wstring(L"cut\0off", 7)}}),
         {},
         Shown::Programs,
         {L"cut", L"", L"", L"", L"", L""}},
        {L"a17",
         with({{L"DisplayName", L"\xD800 lone \xDC00"}}),
         {},
         Shown::Programs,
         {L"\xD800 lone \xDC00", L"", L"", L"", L"", L""}},
        {L"KB111111",
         with({{L"DisplayName", L"by its key"}, {L"Publisher", kMicrosoft}}),
         {},
         Shown::Updates,
         {L"by its key", kMicrosoft, L"", L"", L"", L""}},
        {L"kb222222",
         with({{L"DisplayName", L"lower-case key"}, {L"Publisher", kMicrosoft}}),
         {},
         Shown::Programs,
         {L"lower-case key", kMicrosoft, L"", L"", L"", L""}},
        {L"KB333333",
         with({{L"DisplayName", L"other publisher"}, {L"Publisher", L"microsoft"}}),
         {},
         Shown::Programs,
         {L"other publisher", L"microsoft", L"", L"", L"", L""}},
        {L"KB444444",
         with({{L"DisplayName", L"no publisher (KB444444)"}}),
         {},
         Shown::Programs,
         {L"no publisher (KB444444)", L"", L"", L"", L"", L""}},
        {L"kb555555",
         with({{L"DisplayName", L"Hotfix (kB555555)"}, {L"Publisher", L"The Microsofties"}}),
         {{L"EstimatedSize", 1}},
         Shown::Updates,
         {L"Hotfix (kB555555)", L"The Microsofties", L"0.00MB", L"", L"", L"00000.00"}},
        {L"x KB666666",
         with({{L"DisplayName", L"not at the start"}, {L"Publisher", kMicrosoft}}),
         {},
         Shown::Programs,
         {L"not at the start", kMicrosoft, L"", L"", L"", L""}},
        {L"{90120000-0001}",
         with({{L"DisplayName", L"Security Update (KB123456)"}, {L"Publisher", kMicrosoft}}),
         {},
         Shown::Updates,
         {L"Security Update (KB123456)", kMicrosoft, L"", L"", L"", L""}},
        {L"{90120000-0002}",
         with({{L"DisplayName", L"Visual Basic"}, {L"Publisher", kMicrosoft}}),
         {},
         Shown::Programs,
         {L"Visual Basic", kMicrosoft, L"", L"", L"", L""}},
    };
    return seeds;
}

void Plant(const TestKey& key, const std::vector<Seed>& seeds) {
    for (const Seed& seed : seeds) {
        key.make(seed.key);
        for (const auto& [name, text] : seed.texts)
            key.set_text(seed.key, name, text);
        for (const auto& [name, number] : seed.numbers)
            key.set_number(seed.key, name, number);
    }
}

Rows Expected(const std::vector<Seed>& seeds, Shown shown) {
    Rows rows;
    for (const Seed& seed : seeds) {
        if (seed.shown != shown) continue;
        auto& cells = rows.emplace_back(seed.cells);
        cells.insert(cells.begin() + Column::UninstallCommand, {kCommand, seed.key});
    }
    return rows;
}

Rows Twice(const Rows& rows) {
    Rows twice = rows;
    twice.insert(twice.end(), rows.begin(), rows.end());
    return twice;
}

}  // namespace

TEST_CASE("the lists hold exactly what is registered, in the registry's order, after every refresh") {
    SeededScan scan;
    Plant(scan.machine, Seeds());
    Plant(scan.user, Seeds());
    for (int refresh = 0; refresh < 11; ++refresh) {
        scan.run();
        CHECK(scan.programs.rows() == Twice(Expected(Seeds(), Shown::Programs)));
        CHECK(scan.updates.rows() == Twice(Expected(Seeds(), Shown::Updates)));
    }
    CHECK(scan.host.pumps == 22);

    scan.sid.clear();
    scan.run();
    CHECK(scan.programs.rows() == Expected(Seeds(), Shown::Programs));
}

TEST_CASE("system components are listed when they are asked for") {
    SeededScan scan;
    scan.machine.set_text(L"part", L"UninstallString", kCommand);
    scan.machine.set_number(L"part", L"SystemComponent", 1);
    scan.host.on_pump = [&] { scan.options.show_system_components = scan.host.pumps == 3; };
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
    CHECK(scan.programs.list.tag(0) == programs::kEmptyInstallFolder);
    CHECK(scan.programs.list.tag(1) == 0);
    CHECK(scan.programs.list.tag(2) == 0);
}

TEST_CASE("a key that vanishes during the scan is left out, and so is one whose name cannot be opened") {
    SeededScan scan;
    for (const wchar_t* key : {L"a", L"b", L"c"})
        scan.machine.set_text(key, L"UninstallString", kCommand);
    const native::Key unreachable(scan.machine.get(), std::wstring(L"b\0x", 3));
    REQUIRE(native::SetText(unreachable.get(), L"UninstallString", kCommand));
    REQUIRE(programs::EnumerateSubkeyNames(HKEY_LOCAL_MACHINE, SeededScan::kUninstall).size() == 4);
    scan.host.on_pump = [&] { RegDeleteKeyW(scan.machine.get(), L"b"); };
    scan.run();
    REQUIRE(scan.programs.list.count() == 2);
    CHECK(scan.programs.list.cell(1, Column::RegistryKey) == L"c");
}

TEST_CASE("a bad value costs its own cell and no other") {
    SeededScan scan;
    struct Value {
        const wchar_t* name;
        int column;
    };
    constexpr Value kTexts[] = {{L"DisplayName", Column::Name},
                                {L"Publisher", Column::Publisher},
                                {L"InstallDate", Column::InstallDate},
                                {L"InstallLocation", Column::InstallFolder},
                                {L"UninstallString", Column::UninstallCommand}};
    const std::vector<std::byte> bytes(65536, std::byte{'A'});
    std::map<std::wstring, std::vector<std::wstring>> expected;  // by key name
    for (const DWORD type : {0UL, 1UL, 2UL, 3UL, 4UL, 5UL, 6UL, 7UL, 8UL, 9UL, 10UL, 11UL, 0x7FFFFFFFUL}) {
        for (const std::size_t size : {0U, 1U, 2U, 511U, 512U, 513U, 65536U}) {
            for (const auto& [bad, column] : kTexts) {
                const std::wstring key = std::to_wstring(type) + L" " + std::to_wstring(size) + L" " + bad;
                std::vector<std::wstring> cells(8);
                for (const auto& [name, good_column] : kTexts) {
                    scan.machine.set_text(key, name, L"good");
                    cells[static_cast<std::size_t>(good_column)] = L"good";
                }
                scan.machine.set_bytes(key, bad, type, std::span(bytes).first(size));
                // Wine ends an unterminated string of the string types itself.
                const std::size_t stored = scan.machine.size_of(key, bad);
                const std::size_t length = stored > 512 ? 0 : std::min(size, stored) / 2;
                cells[static_cast<std::size_t>(column)] = std::wstring(length, L'\x4141');
                cells[Column::RegistryKey] = key;
                if (column != Column::UninstallCommand || length > 0) expected[key] = cells;
            }
            const std::wstring key = std::to_wstring(type) + L" " + std::to_wstring(size) + L" sizes";
            scan.machine.set_text(key, L"UninstallString", L"good");
            for (const wchar_t* number : {L"EstimatedSize", L"DisplayIcon"}) {
                scan.machine.set_bytes(key, number, type, std::span(bytes).first(size));
            }
            expected[key] = {L"", L"", L"", L"", L"", L"good", key, L""};
            if (scan.machine.size_of(key, L"EstimatedSize") > 4) continue;
            constexpr std::array<const wchar_t*, 3> kSizes = {L"0.00MB", L"0.06MB", L"16.31MB"};  // 0, 0x41, 0x4141
            expected[key][Column::Size] = kSizes[size];
            expected[key][Column::SizeKey] = programs::SizeSortKey(kSizes[size]);
        }
    }
    scan.run();
    CHECK(scan.updates.list.count() == 0);
    REQUIRE(static_cast<std::size_t>(scan.programs.list.count()) == expected.size());
    for (const auto& row : scan.programs.rows())
        CHECK(row == expected[row[Column::RegistryKey]]);
}

TEST_CASE("the user's own programs lie below the security identifier of the token") {
    const TestKey mark(HKEY_CURRENT_USER, L"Software\\QorvenixTest\\mark");
    const std::vector<std::wstring> names =
        programs::EnumerateSubkeyNames(HKEY_USERS, programs::CurrentUserSid() + L"\\Software\\QorvenixTest");
    CHECK(std::count(names.begin(), names.end(), L"mark") == 1);
}
