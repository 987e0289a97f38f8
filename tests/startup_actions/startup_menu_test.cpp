#include "startup/startup_menu.h"

#include "support/show.h"
#include "support/test_folder.h"

#include <doctest/doctest.h>

using namespace startup;

namespace {

using Items = std::vector<int>;

Items EnabledIn(const StartMenuState& menu) {
    Items items;
    for (const ui::MenuItem& item : kStartMenu) {
        const bool separator = std::wstring_view(item.caption) == L"-";
        if (!separator && menu.is_enabled(item.index)) items.push_back(item.index);
    }
    return items;
}

std::optional<StartupEntry> Entry(const std::wstring& name, const std::wstring& location) {
    return StartupEntry{name, {}, location, {}};
}

}  // namespace

TEST_CASE("The menu of the startup list follows the row under the mouse, or the selected one for the key") {
    TestFolder folder(L"start menu");
    folder.make_file(L"there.lnk");
    folder.make_folder(L"folder.lnk");
    const auto there = Entry(L"there.lnk", folder.path());
    const std::wstring folder_caption = L"スタートアップフォルダを開く(&O)";
    const std::wstring key_caption = L"レジストリパスを開く(&O)";
    StartMenuState menu;
    CHECK(menu.open_caption() == std::wstring(L"開く(&O)"));

    menu.press(true);
    menu.open(there);
    CHECK(EnabledIn(menu) == Items{1, 3, 5, 10, 99});
    menu.key(true);
    for (const auto& without_file : {Entry(L"gone.lnk", folder.path()), Entry(L"folder.lnk", folder.path())}) {
        menu.open(without_file);
        CHECK(EnabledIn(menu) == Items{1, 3, 5, 99});
    }
    menu.open(Entry(L"Value", L"(個別ユーザー)SOFTWARE\\Run"));
    CHECK(EnabledIn(menu) == Items{1, 3, 5, 99});
    CHECK(menu.open_caption() == key_caption);

    // Without a location item 5 goes off and keeps its caption; only the next press on a row brings it back.
    menu.open(Entry(L"Value", {}));
    CHECK(EnabledIn(menu) == Items{1, 3, 99});
    CHECK(menu.open_caption() == key_caption);
    menu.open(there);
    CHECK(EnabledIn(menu) == Items{1, 3, 10, 99});
    CHECK(menu.open_caption() == folder_caption);
    menu.key(false);
    menu.open({});
    CHECK(EnabledIn(menu) == Items{99});
}
