// Two repairs of the Windows shell in the registry.
#pragma once

#include "ui/host.h"

#include <string_view>

namespace tools {

// The items of mnuSetItem that act, by their index.
enum class Repair { SendTo = 5, DownloadLocation = 9 };

// What the menu shows. Item SendTo is always enabled, item DownloadLocation keeps its caption.
struct RepairItems {
    const wchar_t* send_to_caption;
    bool download_location_enabled;
};

// From the facts: whether the handler of "Send To" is there, and the version of Windows in tenths (51 is XP).
RepairItems RepairItemsFor(bool send_to_exists, unsigned os_tenths);

// What the menu shows when it opens.
RepairItems mnuSet_Click(unsigned os_tenths);

// Runs a repair. `caption` is what the menu shows for item SendTo and decides between removing and restoring; item
// DownloadLocation takes no notice of it. Failures are silent.
void mnuSetItem_Click(Repair repair, std::wstring_view caption, ui::Host& host);

}  // namespace tools
