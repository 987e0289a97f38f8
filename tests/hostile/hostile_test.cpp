// What the program reads from outside, whatever is in it: a bad value costs its own cell or row and no other, and
// nothing is shown that is not in it.
#include "support/hostile.h"
#include "programs/detail_link.h"
#include "programs/modReg.h"
#include "programs/program_actions.h"
#include "programs/program_details.h"
#include "programs/seeded_scan.h"
#include "programs/uninstall_command.h"
#include "startup/seeded_startup.h"
#include "support/throw_away.h"
#include "win/folders.h"

#include <map>

using hostile::Source;

namespace {

using Cells = std::vector<std::wstring>;

// What a click on a row reads and builds; nothing is started.
void LookAt(const programs::ProgramRow& row) {
    const auto details = programs::ReadProgramDetails(row.place, row.key_name, SeededScan::kSid);
    for (const std::wstring& text : {details.help_link, row.install_folder}) {
        REQUIRE(text.size() <= 256);
        REQUIRE((programs::LooksLikeLink(text) || programs::FindDetailLink(text).kind == programs::LinkKind::None));
    }
    // Never a name that Windows would search for, or a path from the current folder.
    const std::wstring program = programs::FindCommandProgram(row.uninstall_command).path;
    const bool is_full = program.find(L':') == 1 || program.starts_with(L"\\\\");
    REQUIRE((program.empty() || (is_full && win::IsFile(program))));
}

}  // namespace

TEST_CASE("hostile Uninstall keys cost their own cells and rows") {
    REQUIRE_THROW_AWAY();
    using programs::ProgramColumn;
    constexpr std::pair<const wchar_t*, std::size_t> texts[] = {{L"DisplayName", ProgramColumn::Name},
                                                                {L"Publisher", ProgramColumn::Publisher},
                                                                {L"InstallDate", ProgramColumn::InstallDate},
                                                                {L"InstallLocation", ProgramColumn::InstallFolder},
                                                                {L"UninstallString", ProgramColumn::UninstallCommand}};
    constexpr const wchar_t* others[] = {L"EstimatedSize", L"SystemComponent", L"DisplayIcon", L"HelpLink"};
    const Cells control = {L"電卓", L"株式会社", L"1.50MB", L"2011", L"C:\\電卓", L"C:\\u.exe /x", L"a", L"00001.50"};
    const win::ComApartment apartment;
    SeededScan scan;
    for (const auto& [value, column] : texts)
        scan.machine.set_text(L"a", value, control[column]);
    scan.machine.set_number(L"a", L"EstimatedSize", 1536);
    hostile::Run("programs", 400, [&](Source& source, std::uint64_t round) {
        const std::wstring name = (source.once_in(4) ? L"KB" : L"z") + hostile::MakeName(source, 253);
        const native::Key key((source.once_in(3) ? scan.user : scan.machine).get(), name);
        std::map<std::size_t, std::wstring> stored;
        for (const auto& [value_name, column] : texts) {
            const hostile::Value value = hostile::ValueFor(source, round);
            value.set(key.get(), value_name);
            stored[column] = hostile::TextOf(value.bytes);
        }
        for (const wchar_t* value_name : others)
            if (source.once_in(2)) hostile::ValueFor(source, round).set(key.get(), value_name);
        scan.options = {.show_icons = source.once_in(8), .show_system_components = source.once_in(2)};
        scan.run();
        int controls = 0;
        for (const TestList* list : {&scan.programs, &scan.updates}) {
            for (int row = 0; const Cells& cells : list->rows()) {
                LookAt(*programs::ProgramAt(list->list, row++));
                if (cells == control && ++controls > 0) continue;
                REQUIRE(cells[ProgramColumn::RegistryKey] == name);
                for (const auto& [column, text] : stored)
                    REQUIRE((cells[column].size() <= 256 && text.starts_with(cells[column])));
            }
        }
        REQUIRE(controls == 1);
        const auto read = programs::ReadRegistryValue(key.get(), L"", L"Publisher", 0U);
        const auto* const text = std::get_if<std::wstring>(&read);
        REQUIRE((!text || *text == programs::kUndefinedDataType || *text == stored[ProgramColumn::Publisher]));
    });
}

TEST_CASE("hostile Run values, folder settings and shortcut files cost their own rows") {
    REQUIRE_THROW_AWAY();
    using startup::StartupColumn;
    SeededStartup place;
    const std::wstring target = L"C:\\windows\\regedit.exe";
    const std::wstring& folder = place.user_folder.path();
    const std::wstring run = std::wstring(L"(全ユーザー)") + startup::kRunKey;
    place.machine_once.set_text(L"", L"control", L"C:\\gone.exe /x");
    for (const wchar_t* link : {L"a.lnk", L"c.lnk"})
        MakeLink(place.user_folder.own(link), target);
    const std::string good = ContentOf(folder + L"\\a.lnk");
    std::string bytes = good;
    hostile::Run("startup", 350, [&](Source& source, std::uint64_t round) {
        // Changed further and further, or cut off.
        if (round % 8 == 0) bytes = good;
        source.mutate(bytes);
        // Wine's shell follows the offsets in the block that this flag announces, beyond its memory too.
        constexpr std::size_t kFlags = 0x14;
        if (bytes.size() > kFlags) bytes[kFlags] = static_cast<char>(bytes[kFlags] & ~2);
        place.user_folder.make_file(L"b.lnk", bytes);
        const std::wstring name = hostile::MakeName(source, source.once_in(3) ? 1024 : 300);
        const hostile::Value value = hostile::ValueFor(source, round);
        value.set(place.machine_run.get(), name);
        hostile::ValueFor(source, round).set(place.machine_folders.get(), L"Common Startup");
        place.run();
        const std::vector<Cells> rows = place.list.rows();
        REQUIRE(rows.size() >= 4);
        REQUIRE(rows[0] == Cells{L"a.lnk", target, folder, {}});
        REQUIRE((rows[1][0] == L"b.lnk" && rows[1][StartupColumn::Value].size() < MAX_PATH + 10));
        REQUIRE(rows[2] == Cells{L"c.lnk", target, folder, {}});
        REQUIRE(rows.back() == Cells{L"control", L"C:\\gone.exe /x", run + L"Once", {}});
        bool listed = false;
        for (int row = 3; row < place.list.list.count() - 1; ++row) {
            const Cells& cells = rows[static_cast<std::size_t>(row)];
            if (cells[StartupColumn::Location] != run) {
                REQUIRE(cells[StartupColumn::Value].starts_with(cells[StartupColumn::Location] + L"\\" + cells[0]));
                continue;
            }
            REQUIRE((name.starts_with(cells[0]) && cells[StartupColumn::Value] == hostile::TextOf(value.bytes)));
            const LPARAM tag = cells[0].size() < name.size() ? startup::kEmbeddedNul : 0;
            REQUIRE(place.list.list.item_data(row) == tag);
            listed = true;
        }
        REQUIRE(listed == (name.size() < 1024 && value.bytes.size() <= 1024));
        native::DeleteValue(place.machine_run.get(), name);
    });
}
