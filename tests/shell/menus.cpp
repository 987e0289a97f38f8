#include "shell/menus.h"

#include "win/text.h"

#include <doctest/doctest.h>

#include <set>
#include <string>
#include <vector>

using namespace shell;

namespace {

// The letter behind "&", lower case; 0 for none.
wchar_t Mnemonic(std::wstring_view caption) {
    const std::size_t mark = caption.find(L'&');
    return mark == caption.npos ? L'\0' : win::LowerCase(caption.substr(mark + 1, 1))[0];
}

std::string Utf8(std::wstring_view text) {
    std::string bytes(text.size() * 3, '\0');
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
}

}  // namespace

TEST_CASE("every command has an id of its own, the bar's have a hint, and no letter stands twice on it") {
    std::set<int> ids;
    for (const MenuRow& menu : AllMenus()) {
        std::set<wchar_t> letters;
        int last = -1;
        for (const ui::MenuItem& item : menu.items) {
            CAPTURE(Utf8(item.caption));
            CHECK(item.index > last);
            CHECK(item.index < kMenuArraySize);
            last = item.index;
            CHECK(ids.insert(CommandId(menu.array, item.index)).second);
            if (std::wstring_view(item.caption) == ui::kSeparator) continue;
            CHECK((item.hint != nullptr) == menu.on_bar);
            CHECK(HintOf(CommandId(menu.array, item.index)) == (item.hint ? item.hint : L""));
            if (menu.on_bar && Mnemonic(item.caption)) CHECK(letters.insert(Mnemonic(item.caption)).second);
        }
    }
}

TEST_CASE("the bar opens by Alt and F, V, D, R, H") {
    const win::Menu bar = MakeMenuBar();
    std::wstring letters;
    for (int place = 0; place < GetMenuItemCount(bar.get()); ++place) {
        wchar_t caption[64] = {};
        GetMenuStringW(bar.get(), static_cast<UINT>(place), caption, 64, MF_BYPOSITION);
        letters += Mnemonic(caption);
    }
    CHECK(letters == L"fvdrh");
}

TEST_CASE("state and caption of an item are set by its place in the control array") {
    const win::Menu bar = MakeMenuBar();
    EnableItem(bar.get(), MenuArray::mnuDeleteItem, 1, false);
    CheckItem(bar.get(), MenuArray::mnuViewItem, 6, true);
    SetItemCaption(bar.get(), MenuArray::mnuSetItem, 5, L"別の名前");
    CHECK_FALSE(IsItemEnabled(bar.get(), MenuArray::mnuDeleteItem, 1));
    CHECK(IsItemEnabled(bar.get(), MenuArray::mnuDeleteItem, 0));
    CHECK((GetMenuState(bar.get(), 1106, MF_BYCOMMAND) & MF_CHECKED) != 0);
    CHECK(ItemCaption(bar.get(), MenuArray::mnuSetItem, 5) == L"別の名前");
    CHECK(GetMenuItemID(SubMenuOf(bar.get(), MenuArray::mnuHelpItem), 0) == 1400);
}
