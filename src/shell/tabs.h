// The tabs: one row each, read by the tab click.
#pragma once

#include "shell/controls.h"

#include <span>

namespace shell {

enum class Tab { Programs, Updates, Startup, Processes, Services, ControlPanel, Restore, SystemInformation };

struct TabRow {
    Tab tab;
    const wchar_t* caption;
    const wchar_t* hover;        // status text while the pointer is over the tab; null for none
    Control view;                // the list, or the report box of the information panel
    bool shows_detail;           // Picture1, the area under the list
    bool counts;                 // writes its number of rows to the status bar
    const wchar_t* captions[3];  // Label1(0), Label1(1), Label1(6)
    const wchar_t* delete_tip;   // tool tip of cmdMenu(0); null leaves the former one
};

// What the second button is called on the tab of restore points.
inline constexpr wchar_t kCreateCaption[] = L"作成(&N)";

std::span<const TabRow> AllTabs();
const TabRow& RowOf(Tab tab);

}  // namespace shell
