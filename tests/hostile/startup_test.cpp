// The startup list, and all that a selected row shows, from hostile Run keys, folder settings and shortcut files.
#include "hostile_registry.h"

#include "startup/seeded_startup.h"
#include "startup/startup_menu.h"
#include "support/throw_away.h"

using namespace startup;
using hostile::Cells;
using hostile::Rows;

namespace {

constexpr std::uint64_t kRunRounds = 500;
constexpr std::uint64_t kFolderRounds = 150;
constexpr std::uint64_t kShortcutRounds = 400;
constexpr std::size_t kMostValues = 4;

// A value with more of either ends the listing of its key.
constexpr std::size_t kNameLength = 1023;
constexpr std::size_t kDataBytes = 1024;

const std::wstring kMachine = L"(全ユーザー)";
const std::wstring kUser = L"(個別ユーザー)";

struct Stored {
    std::wstring name;
    hostile::Bytes bytes;
};

// All values of a key whatever their length, in the registry's order.
std::vector<Stored> ValuesOf(HKEY key) {
    static std::wstring name(20000, L'\0');
    static hostile::Bytes data(2U << 20);
    std::vector<Stored> values;
    for (;;) {
        auto length = static_cast<DWORD>(name.size());
        auto bytes = static_cast<DWORD>(data.size());
        if (RegEnumValueW(key, static_cast<DWORD>(values.size()), name.data(), &length, nullptr, nullptr,
                          reinterpret_cast<BYTE*>(data.data()), &bytes) != ERROR_SUCCESS) {
            return values;
        }
        values.push_back({name.substr(0, length), {data.begin(), data.begin() + static_cast<std::ptrdiff_t>(bytes)}});
    }
}

void ChangeValues(hostile::Source& source, std::uint64_t round, HKEY key) {
    const std::vector<Stored> values = ValuesOf(key);
    if (!values.empty() && (values.size() >= kMostValues || source.once_in(3)))
        native::DeleteValue(key, source.pick(values).name);
    // The rarer a value that ends the listing, the more of the others are seen.
    hostile::Value value = hostile::ValueFor(source, round);
    if (value.bytes.size() > kDataBytes && !source.once_in(4)) value.bytes.resize(kDataBytes - source.below(3));
    const std::wstring name = hostile::MakeName(source, source.once_in(30) ? 3000 : 300);
    hostile::Set(key, source.once_in(2) || values.empty() ? name : source.pick(values).name, value);
}

// What a click and the pop-up menu read; nothing is started or deleted.
void LookAt(const ui::ListView& list, int row) {
    list.select(row);
    const auto entry = StartupEntryAt(list, list.selected());
    REQUIRE(entry);
    for (const std::wstring* text : {&entry->name, &entry->value, &entry->location})
        hostile::CheckLink(*text);
    StartMenuState menu;
    menu.open(entry);
    REQUIRE(menu.is_enabled(StartItem::Open));
    REQUIRE_FALSE((IsRegistryEntry(entry->location) && menu.is_enabled(StartItem::Properties)));
}

}  // namespace

TEST_CASE("hostile Run keys cost their own cells, and what they end is what is behind a too long value") {
    REQUIRE_THROW_AWAY();
    SeededStartup place;
    const std::pair<const TestKey&, std::wstring> keys[] = {{place.machine_run, kMachine + kRunKey},
                                                            {place.machine_once, kMachine + kRunOnceKey},
                                                            {place.user_run, kUser + kRunKey},
                                                            {place.user_once, kUser + kRunOnceKey}};
    hostile::Run("run keys", kRunRounds, [&](hostile::Source& source, std::uint64_t round) {
        ChangeValues(source, round, source.pick(keys).first.get());
        place.run();
        Rows expected;
        for (const auto& [key, location] : keys) {
            for (const Stored& value : ValuesOf(key.get())) {
                if (value.name.size() > kNameLength || value.bytes.size() > kDataBytes) break;
                const std::wstring shown(win::CutAtNul(value.name));
                const LPARAM tag = shown.size() < value.name.size() ? kEmbeddedNul : 0;
                REQUIRE(place.list.list.item_data(static_cast<int>(expected.size())) == tag);
                expected.push_back({shown, hostile::TextOf(value.bytes), location, {}});
            }
        }
        REQUIRE(place.list.rows() == expected);
        if (!expected.empty()) LookAt(place.list.list, static_cast<int>(source.below(expected.size())));
    });
}

TEST_CASE("hostile settings of the startup folders leave the registry's rows alone") {
    REQUIRE_THROW_AWAY();
    SeededStartup place;
    place.machine_run.set_text(L"", L"control", L"C:\\gone.exe /x");
    hostile::Run("startup folders", kFolderRounds, [&](hostile::Source& source, std::uint64_t round) {
        hostile::Set(place.user_folders.get(), L"Startup", hostile::ValueFor(source, round));
        hostile::Set(place.machine_folders.get(), L"Common Startup", hostile::ValueFor(source, round));
        place.run();
        Rows rows = place.list.rows();
        REQUIRE_FALSE(rows.empty());
        REQUIRE(rows.back() == Cells{L"control", L"C:\\gone.exe /x", kMachine + kRunKey, {}});
        rows.pop_back();
        for (const Cells& row : rows)
            REQUIRE(
                row[StartupColumn::Value].starts_with(row[StartupColumn::Location] + L"\\" + row[StartupColumn::Name]));
    });
}

TEST_CASE("hostile shortcut files cost their own cells") {
    REQUIRE_THROW_AWAY();
    SeededStartup place;
    const std::wstring target = L"C:\\windows\\regedit.exe";
    MakeLink(place.user_folder.own(L"a.lnk"), target);
    MakeLink(place.user_folder.own(L"c.lnk"), target);
    const std::string good = ContentOf(place.user_folder.path() + L"\\a.lnk");
    REQUIRE(good.size() > 100);
    std::string bytes = good;
    hostile::Run("shortcuts", kShortcutRounds, [&](hostile::Source& source, std::uint64_t round) {
        // First cut off behind every third byte, then changed further and further.
        if (3 * round < good.size()) {
            bytes = good.substr(0, static_cast<std::size_t>(3 * round));
        } else {
            if (source.once_in(8)) bytes = good;
            source.mutate(bytes);
            // Wine's shell follows the offsets in the block that this flag announces, beyond its memory too.
            constexpr std::size_t kFlags = 0x14;
            if (bytes.size() > kFlags) bytes[kFlags] = static_cast<char>(bytes[kFlags] & ~2);
        }
        place.user_folder.make_file(L"b.lnk", bytes);
        place.run();
        const Rows rows = place.list.rows();
        REQUIRE(rows.size() == 3);
        REQUIRE(rows[0] == Cells{L"a.lnk", target, place.user_folder.path(), {}});
        REQUIRE(rows[1][StartupColumn::Name] == L"b.lnk");
        REQUIRE(rows[1][StartupColumn::Value].size() < MAX_PATH + kBrokenLink.size());
        REQUIRE(rows[2] == Cells{L"c.lnk", target, place.user_folder.path(), {}});
    });
}
