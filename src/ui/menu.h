// Menus as tables.
#pragma once

namespace ui {

inline constexpr wchar_t kSeparator[] = L"-";

// One item of a control array of menu items.
struct MenuItem {
    int index;
    const wchar_t* caption;         // kSeparator for a line
    const wchar_t* hint = nullptr;  // what the status bar says while the item is highlighted; none in pop-up menus
};

}  // namespace ui
