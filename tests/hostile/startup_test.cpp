// The startup list, and all that a selected row shows, from hostile Run keys, folder settings and shortcut files.
#include "hostile_registry.h"

#include "programs/detail_link.h"
#include "startup/startup_menu.h"
#include "startup/startup_scan.h"
#include "support/root_override.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "support/test_list.h"
#include "support/throw_away.h"
#include "win/com_ptr.h"

#include <array>

using namespace startup;

namespace {

using Cells = std::vector<std::wstring>;
using Rows = std::vector<Cells>;

constexpr std::uint64_t kRunRounds = 500;
constexpr std::uint64_t kFolderRounds = 150;
constexpr std::uint64_t kShortcutRounds = 400;
constexpr std::size_t kMostValues = 4;

// A value with more of either ends the listing of its key.
constexpr std::size_t kNameLength = 1023;
constexpr std::size_t kDataBytes = 1024;

constexpr wchar_t kShellFolders[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

// Both startup folders and the four keys in a test's own place.
class Place {
public:
    Place() {
        user_folders.set_text(L"", L"Startup", user_folder.path());
        machine_folders.set_text(L"", L"Common Startup", common_folder.path());
    }

    void run() { ScanStartup(list.list, host); }

    const win::ComApartment apartment;
    TestFolder user_folder{L"QorvenixHostile"};
    TestFolder common_folder{L"QorvenixHostileCommon"};
    TestKey sandbox{HKEY_CURRENT_USER, L"Software\\QorvenixTest\\hostile"};
    TestKey user_folders{HKEY_CURRENT_USER, sandbox.path() + L"\\user\\" + kShellFolders};
    TestKey machine_folders{HKEY_CURRENT_USER, sandbox.path() + L"\\machine\\" + kShellFolders};
    // In the order of the list.
    std::array<TestKey, 4> keys = {{{HKEY_CURRENT_USER, sandbox.path() + L"\\machine\\" + kRunKey},
                                    {HKEY_CURRENT_USER, sandbox.path() + L"\\machine\\" + kRunOnceKey},
                                    {HKEY_CURRENT_USER, sandbox.path() + L"\\user\\" + kRunKey},
                                    {HKEY_CURRENT_USER, sandbox.path() + L"\\user\\" + kRunOnceKey}}};
    TestList list{kStartupColumns};
    TestHost host;

private:
    win::RegKey open(const wchar_t* name) const {
        win::RegKey key;
        RegOpenKeyExW(sandbox.get(), name, 0, KEY_ALL_ACCESS, key.put());
        return key;
    }

    win::RegKey machine_root_ = open(L"machine");
    win::RegKey user_root_ = open(L"user");
    RootOverride machine_override_{HKEY_LOCAL_MACHINE, machine_root_.get()};
    RootOverride user_override_{HKEY_CURRENT_USER, user_root_.get()};
};

constexpr const wchar_t* kLocations[] = {
    L"(全ユーザー)SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run",
    L"(全ユーザー)SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
    L"(個別ユーザー)SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run",
    L"(個別ユーザー)SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce",
};

struct Stored {
    std::wstring name;
    hostile::Bytes bytes;
};

// All values of a key whatever their length, in the registry's order.
std::vector<Stored> ValuesOf(HKEY key) {
    static std::wstring name(20000, L'\0');
    static hostile::Bytes data(2U << 20);
    std::vector<Stored> values;
    for (DWORD index = 0;; ++index) {
        auto length = static_cast<DWORD>(name.size());
        auto bytes = static_cast<DWORD>(data.size());
        if (RegEnumValueW(key, index, name.data(), &length, nullptr, nullptr, reinterpret_cast<BYTE*>(data.data()),
                          &bytes) != ERROR_SUCCESS) {
            return values;
        }
        values.push_back({name.substr(0, length), {data.begin(), data.begin() + static_cast<std::ptrdiff_t>(bytes)}});
    }
}

struct Model {
    Rows rows;
    std::vector<LPARAM> tags;
};

Model Expected(const Place& place) {
    Model model;
    for (std::size_t index = 0; index < place.keys.size(); ++index) {
        for (const Stored& value : ValuesOf(place.keys[index].get())) {
            if (value.name.size() > kNameLength || value.bytes.size() > kDataBytes) break;
            const std::wstring shown(win::CutAtNul(value.name));
            model.rows.push_back({shown, hostile::TextOf(value.bytes), kLocations[index], {}});
            model.tags.push_back(shown.size() < value.name.size() ? kNameGoesOn : 0);
        }
    }
    return model;
}

void ChangeValues(hostile::Source& source, std::uint64_t round, HKEY key) {
    const std::vector<Stored> values = ValuesOf(key);
    if (!values.empty() && (values.size() >= kMostValues || source.once_in(3))) {
        native::DeleteValue(key, source.pick(values).name);
    }
    // The rarer a value that ends the listing, the more of the others are seen.
    hostile::Value value = hostile::ValueFor(source, round);
    if (value.bytes.size() > kDataBytes && !source.once_in(4)) value.bytes.resize(kDataBytes - source.below(3));
    const std::wstring name = hostile::MakeName(source, source.once_in(30) ? 3000 : 300);
    hostile::Set(key, source.once_in(2) || values.empty() ? name : source.pick(values).name, value);
}

// What a click and the pop-up menu read; nothing is started or deleted.
void LookAt(const ui::ListView& list, int row) {
    list.select(row);
    const auto entry = SelectedStartupEntry(list);
    REQUIRE(entry);
    for (const std::wstring* text : {&entry->name, &entry->value, &entry->location})
        REQUIRE((programs::LooksLikeLink(*text) || programs::FindDetailLink(*text).kind == programs::LinkKind::None));
    StartMenuState menu;
    menu.open(entry);
    REQUIRE(menu.is_enabled(StartItem::Open));
    REQUIRE_FALSE((IsRegistryEntry(entry->location) && menu.is_enabled(StartItem::Properties)));
}

void MakeLink(const std::wstring& path, const std::wstring& target) {
    win::ComPtr<IShellLinkW> link;
    REQUIRE(
        SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.put_void())));
    link->SetPath(target.c_str());
    link->SetDescription(L"説明");
    link->SetArguments(L"/a \"b c\"");
    link->SetWorkingDirectory(L"C:\\windows");
    link->SetIconLocation(L"%windir%\\regedit.exe", 0);
    REQUIRE(SUCCEEDED(link.as<IPersistFile>(IID_IPersistFile)->Save(path.c_str(), TRUE)));
}

// Wine's shell follows the offsets in a shortcut's location block wherever they lead, beyond its memory too: only files
// where that block is the good one, is cut off by the end of the file, or is not announced.
bool IsSafeForWine(const std::string& bytes, const std::string& good) {
    constexpr std::size_t kHeader = 0x4C;
    constexpr std::size_t kFlags = 0x14;
    const auto location_of = [](const std::string& file) {
        const auto number = [&file](std::size_t at, std::size_t size) {
            std::size_t value = 0;
            while (size-- > 0)
                value = value << 8 | static_cast<unsigned char>(file[at + size]);
            return value;
        };
        if (file.size() < kHeader + 2 || (number(kFlags, 1) & 2) == 0) return std::string();
        const std::size_t start = (number(kFlags, 1) & 1) != 0 ? kHeader + 2 + number(kHeader, 2) : kHeader;
        if (start + 4 > file.size()) return std::string();
        const std::size_t size = number(start, 4);
        return size > file.size() - start ? std::string() : file.substr(start, size) + "found";
    };
    const std::string location = location_of(bytes);
    return location.empty() || location == location_of(good);
}

}  // namespace

TEST_CASE("hostile Run keys cost their own cells, and what they end is what is behind a too long value") {
    REQUIRE_THROW_AWAY();
    Place place;
    hostile::Run("run keys", kRunRounds, [&](hostile::Source& source, std::uint64_t round) {
        ChangeValues(source, round, source.pick(place.keys).get());
        place.run();
        const Model expected = Expected(place);
        REQUIRE(place.list.rows() == expected.rows);
        for (std::size_t row = 0; row < expected.tags.size(); ++row)
            REQUIRE(place.list.list.tag(static_cast<int>(row)) == expected.tags[row]);
        if (!expected.rows.empty()) LookAt(place.list.list, static_cast<int>(source.below(expected.rows.size())));
    });
}

TEST_CASE("hostile settings of the startup folders leave the registry's rows alone") {
    REQUIRE_THROW_AWAY();
    Place place;
    place.keys[0].set_text(L"", L"control", L"C:\\gone.exe /x");
    const Cells control = {L"control", L"C:\\gone.exe /x", kLocations[0], {}};
    hostile::Run("startup folders", kFolderRounds, [&](hostile::Source& source, std::uint64_t round) {
        hostile::Set(place.user_folders.get(), L"Startup", hostile::ValueFor(source, round));
        hostile::Set(place.machine_folders.get(), L"Common Startup", hostile::ValueFor(source, round));
        place.run();
        Rows rows = place.list.rows();
        REQUIRE_FALSE(rows.empty());
        REQUIRE(rows.back() == control);
        rows.pop_back();
        for (const Cells& row : rows)
            REQUIRE(
                row[StartupColumn::Value].starts_with(row[StartupColumn::Location] + L"\\" + row[StartupColumn::Name]));
    });
}

TEST_CASE("hostile shortcut files cost their own cells") {
    REQUIRE_THROW_AWAY();
    Place place;
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
        }
        if (!IsSafeForWine(bytes, good)) bytes = good;
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
