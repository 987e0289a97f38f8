// The System Restore points: listed, created and deleted.
#pragma once

#include "ui/host.h"
#include "ui/list_view.h"

#include <optional>
#include <string>
#include <string_view>

namespace programs {

// The columns of lvRestore. The row's tag is the point's sequence number, 0 where the provider gives none.
struct RestoreColumn {
    enum Index : int { Date, Description };
};

// In the order of RestoreColumn.
inline constexpr ui::Column kRestoreColumns[] = {{L"日時", 150}, {L"説明", 450}};

// The time of a restore point as the list shows it: the UTC time of a WMI date-time text ("20090301150405...") nine
// hours on, as "2009/03/02 00:04:04", where the minutes stand twice and the seconds not at all. Nothing when the first
// 14 characters are no date and time.
std::optional<std::wstring> RestorePointTime(std::wstring_view creation_time);

// Hides the list, fills it in the provider's order and shows it again. False when WMI cannot be asked or breaks off:
// then the list stays hidden, and no point can be created or deleted.
bool ListRestorePoints(const ui::ListView& list);

// Asks for a description and creates a point. Only while the list is shown, and not without a description. The list
// stays as it is: the new point can take minutes to appear. Where the creation fails the status bar's former text
// returns and nothing is said.
void CreateRestorePoint(const ui::ListView& list, ui::Host& host);

// Asks and deletes the selected point by its sequence number (SRRemoveRestorePoint, which Windows 2000 lacks). Only
// while the list is shown. True when the user agreed: the caller then lists the points again, which shows whether the
// point is gone.
bool DeleteRestorePoint(const ui::ListView& list, ui::Host& host);

}  // namespace programs
