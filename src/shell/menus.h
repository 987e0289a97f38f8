// All menus: one row a menu, which holds one an item; the features' own menus stand with them. A command's id is the
// base of its array plus its index, so the indexes stay what the handlers count with.
#pragma once

#include "ui/menu.h"
#include "win/handle.h"

#include <span>
#include <string>
#include <string_view>

namespace shell {

// The control arrays; the value is the base of their command ids.
enum class MenuArray : int {
    mnuFileItem = 1000,
    mnuViewItem = 1100,
    mnuDeleteItem = 1200,
    mnuSetItem = 1300,
    mnuHelpItem = 1400,
    mnuPopItem = 1500,
    mnuStartItem = 1600,
    mnuServiceItem = 1700,
};

inline constexpr int kMenuArraySize = 100;
inline constexpr int CommandId(MenuArray array, int index) { return static_cast<int>(array) + index; }

struct FileItem {
    enum Index : int { Save = 3, Refresh = 5, Exit = 99 };
};
struct ViewItem {
    enum Index : int { Icons = 1, Stripes = 2, SystemComponents = 6 };
};
struct HelpItem {
    enum Index : int { ReadMe = 0, HomePage = 1, Version = 2, Update = 99 };
};

struct MenuRow {
    MenuArray array;
    const wchar_t* caption;  // on the menu bar; for a pop-up menu its name
    bool on_bar;
    std::span<const ui::MenuItem> items;
};

std::span<const MenuRow> AllMenus();
const MenuRow& RowOf(MenuArray array);

win::Menu MakeMenuBar();
win::Menu MakePopup(MenuArray array);

// The popup of an array on the menu bar.
HMENU SubMenuOf(HMENU bar, MenuArray array);

// The hint of a command on the menu bar; empty for every other.
std::wstring_view HintOf(int command);

// The lower-case letter behind the "&" of a caption; 0 where there is none.
wchar_t MnemonicOf(std::wstring_view caption);

// Whether Alt with this lower-case letter opens a menu of the bar.
bool OpensMenu(wchar_t letter);

// State of one item in a menu, wherever it is nested.
void EnableItem(HMENU menu, MenuArray array, int index, bool enabled);
void CheckItem(HMENU menu, MenuArray array, int index, bool checked);
std::wstring ItemCaption(HMENU menu, MenuArray array, int index);
void SetItemCaption(HMENU menu, MenuArray array, int index, const std::wstring& caption);

}  // namespace shell
