// Menus as tables.
#pragma once

namespace ui {

// One item: its index in the menu's control array, and its caption; "-" is a separator.
struct MenuItem {
    int index;
    const wchar_t* caption;
};

}  // namespace ui
