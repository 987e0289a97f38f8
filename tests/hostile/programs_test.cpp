// The lists of programs and updates, and all that a selected row shows and prepares, from hostile Uninstall keys.
#include "hostile_registry.h"

#include "programs/modReg.h"
#include "programs/program_actions.h"
#include "programs/program_details.h"
#include "programs/registry_editor.h"
#include "programs/seeded_scan.h"
#include "programs/uninstall_command.h"
#include "shell/csv_export.h"
#include "support/throw_away.h"
#include "win/com_ptr.h"
#include "win/folders.h"
#include "win/size_text.h"

#include <deque>

using namespace programs;
using hostile::Cells;
using hostile::Rows;

namespace {

constexpr std::uint64_t kRounds = 700;
constexpr std::size_t kMostKeys = 8;
constexpr std::size_t kTextBytes = 512;  // a longer text counts as missing

constexpr struct {
    std::size_t column;
    const wchar_t* value;
} kTexts[] = {{ProgramColumn::Name, L"DisplayName"},
              {ProgramColumn::Publisher, L"Publisher"},
              {ProgramColumn::InstallDate, L"InstallDate"},
              {ProgramColumn::InstallFolder, L"InstallLocation"},
              {ProgramColumn::UninstallCommand, L"UninstallString"}};

constexpr const wchar_t* kOtherValues[] = {
    L"EstimatedSize", L"SystemComponent", L"DisplayIcon", L"HelpLink", L"URLInfoAbout", L"HelpTelephone", L""};

const Cells kControl = {L"電卓",     L"株式会社",           L"1.50MB",    L"20110203",
                        L"C:\\電卓", L"C:\\電卓\\u.exe /x", L"a control", L"00001.50"};

// Uninstall keys that change from round to round, and a control among the machine's and the user's.
class HostileKeys {
public:
    HostileKeys() {
        for (const TestKey* key : {&scan.machine, &scan.user}) {
            for (const auto& text : kTexts)
                key->set_text(kControl[ProgramColumn::RegistryKey], text.value, kControl[text.column]);
            key->set_number(kControl[ProgramColumn::RegistryKey], L"EstimatedSize", 1536);
        }
    }

    void change(hostile::Source& source, std::uint64_t round) {
        if (keys_.empty() || (keys_.size() < kMostKeys && source.once_in(2))) {
            const wchar_t* const start = source.once_in(4) ? L"KB" : L"z";  // never the control's name
            keys_.emplace_back((source.once_in(3) ? scan.user : scan.machine).get(),
                               start + hostile::MakeName(source, 253));
            hostile::Set(keys_.back().get(), L"UninstallString", hostile::ValueFor(source, round));
        }
        if (keys_.size() > 2 && source.once_in(4)) keys_.pop_front();
        const HKEY key = (source.once_in(2) ? keys_.back() : source.pick(keys_)).get();
        for (const auto& text : kTexts)
            change_value(source, round, key, text.value);
        for (const wchar_t* name : kOtherValues)
            change_value(source, round, key, name);
        scan.options.show_system_components = source.once_in(2);
        scan.options.show_icons = source.once_in(8);
    }

    SeededScan scan;

private:
    static void change_value(hostile::Source& source, std::uint64_t round, HKEY key, const wchar_t* name) {
        const bool known = round < std::size(hostile::kNastyValues);
        if (!known && !source.once_in(3)) return;
        if (source.once_in(6)) native::DeleteValue(key, name);
        hostile::Value value = hostile::ValueFor(source, round);
        if (!known && source.once_in(4)) value.bytes.resize(source.below(6));  // as a number has
        if (!source.once_in(6)) hostile::Set(key, name, value);
    }

    std::deque<native::Key> keys_;
};

// What the entries below a key have to show: read without the program's bounds, then held against them.
void Expect(HKEY parent, const ScanOptions& options, Rows& rows) {
    for (const std::wstring& name : EnumerateSubkeyNames(parent, L"")) {
        win::RegKey key;
        if (RegOpenKeyExW(parent, name.c_str(), 0, KEY_QUERY_VALUE, key.put()) != ERROR_SUCCESS) continue;
        const auto read = [&key](const wchar_t* value, std::size_t most) {
            return hostile::Read(key.get(), value, most);
        };
        const auto component = read(L"SystemComponent", sizeof(DWORD));
        if (!options.show_system_components && component && hostile::NumberOf(*component) != 0) continue;
        Cells row(std::size(kProgramColumns));
        for (const auto& text : kTexts)
            row[text.column] = hostile::TextOf(read(text.value, kTextBytes).value_or(hostile::Bytes()));
        if (row[ProgramColumn::UninstallCommand].empty()) continue;
        row[ProgramColumn::RegistryKey] = name;
        if (const auto kilobytes = read(L"EstimatedSize", sizeof(DWORD))) {
            row[ProgramColumn::Size] = win::MegabyteText(hostile::NumberOf(*kilobytes));
            row[ProgramColumn::SizeKey] = win::SizeSortKey(row[ProgramColumn::Size]);
        }
        rows.push_back(std::move(row));
    }
}

// What a click on one of the rows reads and builds; nothing is started.
void LookAtOne(const ui::ListView& list, hostile::Source& source) {
    if (list.count() == 0) return;
    const auto index = static_cast<int>(source.below(static_cast<std::size_t>(list.count())));
    list.select(index);
    const auto row = ProgramAt(list, list.selected());
    REQUIRE(row);
    REQUIRE(row->key_name == list.cell(index, ProgramColumn::RegistryKey));
    const ProgramDetails details = ReadProgramDetails(row->place, row->key_name, SeededScan::kSid);
    for (const std::wstring* text : {&details.help_link, &details.url_info_about, &details.help_telephone}) {
        REQUIRE(text->size() <= 256);
        hostile::CheckLink(*text);
    }
    const CommandProgram program = FindCommandProgram(row->uninstall_command);
    // Never a name that Windows would search for, or a path from the current folder.
    REQUIRE((program.path.empty() || program.path.find(L':') == 1 || program.path.starts_with(L"\\\\")));
    REQUIRE((program.path.empty() || win::IsFile(program.path)));
    REQUIRE(program.command_line.ends_with(program.arguments));
    REQUIRE(InstallFolderCommand(*row).empty() == (row->install_folder.empty() && !row->empty_install_folder));
    StoreLastKey(row->key_name);
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
        Rows expected;
        Expect(keys.scan.machine.get(), keys.scan.options, expected);
        Expect(keys.scan.user.get(), keys.scan.options, expected);
        Rows shown;
        for (const TestList* list : {&keys.scan.programs, &keys.scan.updates}) {
            if (source.once_in(16)) list->list.sort(static_cast<int>(source.below(8)), ui::SortOrder::Descending);
            for (const Cells& row : list->rows())
                shown.push_back(row);
            LookAtOne(list->list, source);
        }
        std::ranges::sort(shown);
        std::ranges::sort(expected);
        REQUIRE(shown == expected);
        REQUIRE(std::ranges::count(shown, kControl) == 2);
        if (source.once_in(16)) REQUIRE(!shell::CsvOf(keys.scan.programs.list, keys.scan.host).empty());
    });
}
