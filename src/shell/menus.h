// All menus: one row an item. A command's id is the base of its array plus its index, so the indexes stay what the
// handlers count with.
#pragma once

#include "ui/menu.h"
#include "win/handle.h"

#include <span>
#include <string>

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

// State of one item in a menu, wherever it is nested.
void EnableItem(HMENU menu, MenuArray array, int index, bool enabled);
bool IsItemEnabled(HMENU menu, MenuArray array, int index);
void CheckItem(HMENU menu, MenuArray array, int index, bool checked);
std::wstring ItemCaption(HMENU menu, MenuArray array, int index);
void SetItemCaption(HMENU menu, MenuArray array, int index, const std::wstring& caption);

}  // namespace shell
