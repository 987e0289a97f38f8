// The tabs: one row each, read by the tab click.
#pragma once

#include "shell/controls.h"
#include "shell/layout.h"
#include "win/os_version.h"

#include <span>

namespace shell {

enum class Tab { Programs, Updates, Startup, Processes, Services, ControlPanel, Restore, SystemInformation };

// What "情報の更新(&U)" of the File menu does.
enum class RefreshKind { Nothing, Fill, TabClick };

// The systems on which a tab is on the strip.
enum class TabPresence { Always, WithSystemRestore, Never };

// A button of the detail area.
struct ButtonText {
    const wchar_t* caption;
    const wchar_t* tip;
};

struct TabRow {
    Tab tab;
    TabPresence presence;
    const wchar_t* caption;
    const wchar_t* hover;  // status text while the pointer is over the tab; null for none
    Control view;          // the list, or the report box of the information panel
    bool counts;           // writes its number of rows to the status bar
    RefreshKind refresh;
    DetailKind detail;           // what is under the list
    const wchar_t* captions[3];  // Label1(0), Label1(1), Label1(6)
    int buttons;                 // of cmdMenu, shown from the first one on
    const wchar_t* delete_tip;   // tool tip of cmdMenu(0); null leaves the former one
    ButtonText second_button;    // cmdMenu(1), from the first tab click on
};

// What the second button is called on the tab of restore points.
inline constexpr wchar_t kCreateCaption[] = L"作成(&N)";

std::span<const TabRow> AllTabs();
const TabRow& RowOf(Tab tab);

bool IsOnStrip(const TabRow& row, const win::OsVersion& os);

}  // namespace shell
