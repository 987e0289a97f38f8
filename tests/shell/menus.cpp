#include "shell/menus.h"

#include "support/show.h"

#include <set>
#include <string>

using namespace shell;

TEST_CASE("every command has an id of its own, the bar's have a hint, and no letter stands twice on it") {
    std::set<int> ids;
    for (const MenuRow& menu : AllMenus()) {
        std::set<wchar_t> letters;
        int last = -1;
        for (const ui::MenuItem& item : menu.items) {
            CAPTURE(std::wstring(item.caption));
            CHECK(item.index > last);
            CHECK(item.index < kMenuArraySize);
            last = item.index;
            CHECK(ids.insert(CommandId(menu.array, item.index)).second);
            if (std::wstring_view(item.caption) == ui::kSeparator) continue;
            CHECK((item.hint != nullptr) == menu.on_bar);
            CHECK(HintOf(CommandId(menu.array, item.index)) == (item.hint ? item.hint : L""));
            const wchar_t letter = MnemonicOf(item.caption);
            if (menu.on_bar && letter) CHECK(letters.insert(letter).second);
        }
    }
}

TEST_CASE("the bar opens by Alt and F, V, D, R, H") {
    std::wstring letters;
    for (wchar_t letter = L'\0'; letter < 0x80; ++letter) {
        if (OpensMenu(letter)) letters += letter;
    }
    CHECK(letters == L"dfhrv");
    CHECK(MnemonicOf(L"a&") == L'\0');
}

TEST_CASE("state and caption of an item are set by its place in the control array") {
    const win::Menu bar = MakeMenuBar();
    EnableItem(bar.get(), MenuArray::mnuDeleteItem, 1, false);
    CheckItem(bar.get(), MenuArray::mnuViewItem, 6, true);
    SetItemCaption(bar.get(), MenuArray::mnuSetItem, 5, L"別の名前");
    CHECK((GetMenuState(bar.get(), 1201, MF_BYCOMMAND) & MF_GRAYED) != 0);
    CHECK((GetMenuState(bar.get(), 1200, MF_BYCOMMAND) & MF_GRAYED) == 0);
    CHECK((GetMenuState(bar.get(), 1106, MF_BYCOMMAND) & MF_CHECKED) != 0);
    CHECK(ItemCaption(bar.get(), MenuArray::mnuSetItem, 5) == L"別の名前");
    CHECK(GetMenuItemID(SubMenuOf(bar.get(), MenuArray::mnuHelpItem), 0) == 1400);
}
