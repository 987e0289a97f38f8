// The lists of programs and updates, and all that a selected row shows and prepares, from hostile Uninstall keys.
#include "hostile_registry.h"

#include "programs/detail_link.h"
#include "programs/program_actions.h"
#include "programs/program_details.h"
#include "programs/registry_editor.h"
#include "programs/seeded_scan.h"
#include "programs/size_text.h"
#include "programs/uninstall_command.h"
#include "shell/csv_export.h"
#include "support/throw_away.h"
#include "win/com_ptr.h"
#include "win/folders.h"
#include "win/system_text.h"

#include <algorithm>
#include <deque>

using namespace programs;

namespace {

using Cells = std::vector<std::wstring>;
using Rows = std::vector<Cells>;

constexpr std::uint64_t kRounds = 700;
constexpr std::size_t kMostKeys = 8;
constexpr std::size_t kTextBytes = 512;  // a longer text counts as missing

constexpr const wchar_t* kValueNames[] = {
    L"UninstallString", L"DisplayName", L"Publisher", L"InstallDate",  L"InstallLocation", L"EstimatedSize",
    L"SystemComponent", L"DisplayIcon", L"HelpLink",  L"URLInfoAbout", L"HelpTelephone",   L"",
};

const Cells kControl = {L"電卓",     L"株式会社",           L"1.50MB",    L"20110203",
                        L"C:\\電卓", L"C:\\電卓\\u.exe /x", L"a control", L"00001.50"};

void PlantControl(const TestKey& key) {
    key.set_text(kControl[ProgramColumn::RegistryKey], L"DisplayName", kControl[ProgramColumn::Name]);
    key.set_text(kControl[ProgramColumn::RegistryKey], L"Publisher", kControl[ProgramColumn::Publisher]);
    key.set_text(kControl[ProgramColumn::RegistryKey], L"InstallDate", kControl[ProgramColumn::InstallDate]);
    key.set_text(kControl[ProgramColumn::RegistryKey], L"InstallLocation", kControl[ProgramColumn::InstallFolder]);
    key.set_text(kControl[ProgramColumn::RegistryKey], L"UninstallString", kControl[ProgramColumn::UninstallCommand]);
    key.set_number(kControl[ProgramColumn::RegistryKey], L"EstimatedSize", 1536);
    std::wstring deep = kControl[ProgramColumn::RegistryKey];
    while (deep.size() < 2000)
        deep += L"\\deeper and deeper";
    key.make(deep);
}

// What an entry has to show, read without the bounds of the program and then held against them.
class Model {
public:
    Model(const SeededScan& scan) : options_(scan.options) {
        add(scan.machine.get());
        add(scan.user.get());
    }

    Rows programs;
    Rows updates;

private:
    void add(HKEY parent) {
        wchar_t name[512] = {};
        for (DWORD index = 0, length = 512;
             RegEnumKeyExW(parent, index, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
             ++index, length = 512) {
            add_entry(parent, name);
        }
    }
    void add_entry(HKEY parent, const std::wstring& name) {
        win::RegKey key;
        if (RegOpenKeyExW(parent, name.c_str(), 0, KEY_QUERY_VALUE, key.put()) != ERROR_SUCCESS) return;
        const auto text = [&key](const wchar_t* value) {
            const auto read = hostile::Read(key.get(), value);
            return read && read->bytes.size() <= kTextBytes ? hostile::TextOf(read->bytes) : std::wstring();
        };
        if (!options_.show_system_components && number(key.get(), L"SystemComponent").value_or(0) != 0) return;
        Cells row = {text(L"DisplayName"),     text(L"Publisher"),       L"",  text(L"InstallDate"),
                     text(L"InstallLocation"), text(L"UninstallString"), name, L""};
        if (row[ProgramColumn::UninstallCommand].empty()) return;
        if (const auto kilobytes = number(key.get(), L"EstimatedSize")) {
            row[ProgramColumn::Size] = MegabyteText(*kilobytes);
            row[ProgramColumn::SizeKey] = SizeSortKey(row[ProgramColumn::Size]);
        }
        const bool update =
            win::Contains(row[ProgramColumn::Publisher], L"Microsoft") &&
            (name.starts_with(L"KB") || win::Contains(win::LowerCase(row[ProgramColumn::Name]), L"(kb"));
        (update ? updates : programs).push_back(std::move(row));
    }
    static std::optional<std::uint32_t> number(HKEY key, const wchar_t* value) {
        const auto read = hostile::Read(key, value);
        if (!read || read->bytes.size() > sizeof(std::uint32_t)) return {};
        std::uint32_t made = 0;
        std::copy(read->bytes.begin(), read->bytes.end(), reinterpret_cast<std::byte*>(&made));
        return made;
    }

    ScanOptions options_;
};

// Uninstall keys that change from round to round.
class HostileKeys {
public:
    HostileKeys() {
        PlantControl(scan.machine);
        PlantControl(scan.user);
    }

    void change(hostile::Source& source, std::uint64_t round) {
        if (keys_.empty() || (keys_.size() < kMostKeys && source.once_in(2))) add(source);
        if (keys_.size() > 2 && source.once_in(4)) keys_.pop_front();
        if (round < std::size(hostile::kNastyValues)) {
            for (const wchar_t* name : kValueNames)
                hostile::Set(keys_.back().get(), name, hostile::ValueOf(hostile::kNastyValues[round]));
        }
        for (std::size_t changes = source.below(4); changes > 0; --changes)
            change_value(source, keys_[source.below(keys_.size())].get());
        scan.options.show_system_components = source.once_in(2);
        scan.options.show_icons = source.once_in(8);
    }

    SeededScan scan;

private:
    void add(hostile::Source& source) {
        const HKEY parent = (source.once_in(3) ? scan.user : scan.machine).get();
        const wchar_t* const start = source.once_in(4) ? L"KB" : L"z";  // never the control's name
        keys_.emplace_back(parent, start + hostile::MakeName(source, 253));
        for (const wchar_t* name : kValueNames)
            if (source.once_in(3)) change_value(source, keys_.back().get(), name);
        hostile::Set(keys_.back().get(), L"UninstallString", hostile::MakeValue(source));
    }
    static void change_value(hostile::Source& source, HKEY key, const wchar_t* name = nullptr) {
        const std::wstring value = name ? name : source.pick(kValueNames);
        if (source.once_in(6)) {
            native::DeleteValue(key, value);
        } else if (value == L"EstimatedSize" || value == L"SystemComponent") {
            hostile::Set(key, value, {REG_DWORD, source.bytes(source.once_in(3) ? source.below(9) : 4)});
        } else {
            hostile::Set(key, value, hostile::MakeValue(source));
        }
    }

    std::deque<native::Key> keys_;
};

// What a click on the row reads and builds; nothing is started.
void LookAt(const ui::ListView& list, int index) {
    list.select(index);
    const auto row = SelectedProgram(list);
    REQUIRE(row);
    REQUIRE(row->key_name == list.cell(index, ProgramColumn::RegistryKey));
    const ProgramDetails details = ReadProgramDetails(row->key_name, SeededScan::kSid);
    for (const std::wstring* text : {&details.help_link, &details.url_info_about, &details.help_telephone}) {
        REQUIRE(text->size() <= 256);
        REQUIRE_FALSE(win::Contains(*text, std::wstring_view(L"\0", 1)));
        REQUIRE((LooksLikeLink(*text) || FindDetailLink(*text).kind == LinkKind::None));
    }
    const CommandProgram program = FindCommandProgram(row->uninstall_command);
    // Never a name that Windows would search for, or a path from the current folder.
    REQUIRE((program.path.empty() || program.path.find(L':') == 1 || program.path.starts_with(L"\\\\")));
    REQUIRE((program.path.empty() || win::IsFile(program.path)));
    REQUIRE(row->uninstall_command.find(program.arguments) != std::wstring::npos);
    REQUIRE(InstallFolderCommand(*row).empty() == (row->install_folder.empty() && !row->empty_install_folder));
    StoreLastKey(row->key_name);
}

void LookAtAll(const TestList& shown, const Rows& expected, hostile::Source& source, TestHost& host) {
    REQUIRE(shown.rows() == expected);
    if (!expected.empty()) LookAt(shown.list, static_cast<int>(source.below(expected.size())));
    if (!source.once_in(16)) return;
    REQUIRE(!shell::CsvOf(shown.list, host).empty());
    shown.list.sort(static_cast<int>(source.below(8)), ui::SortOrder::Descending);
    Rows sorted = shown.rows();
    Rows rows = expected;
    std::sort(sorted.begin(), sorted.end());
    std::sort(rows.begin(), rows.end());
    REQUIRE(sorted == rows);
}

}  // namespace

TEST_CASE("hostile Uninstall keys cost their own cells and rows") {
    REQUIRE_THROW_AWAY();
    const win::ComApartment apartment;
    const TestKey editor(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Applets\\Regedit");
    HostileKeys keys;
    hostile::Run("programs", kRounds, [&](hostile::Source& source, std::uint64_t round) {
        keys.change(source, round);
        keys.scan.run();
        const Model model(keys.scan);
        REQUIRE(std::count(model.programs.begin(), model.programs.end(), kControl) == 2);
        LookAtAll(keys.scan.programs, model.programs, source, keys.scan.host);
        LookAtAll(keys.scan.updates, model.updates, source, keys.scan.host);
    });
}
