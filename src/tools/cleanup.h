// The menu of the clean-up commands.
#pragma once

#include "ui/host.h"

#include <cstdint>

namespace tools {

// The items of mnuDeleteItem, by their index.
enum class Cleanup { RecycleBin, TemporaryFiles, RecentDocuments, BrowserCache, Cookies, UrlHistory };

struct ItemState {
    const wchar_t* caption;
    bool enabled;
};

// Item RecycleBin for a number of items in all recycle bins.
ItemState RecycleBinItem(std::uint64_t items);

// What the menu shows when it opens: item RecycleBin for the recycle bins as they are.
ItemState mnuDelete_Click();

// Runs a command between its two status texts; the second one follows whatever came of it. Counts as something running
// until it returns. True when the recycle bin was emptied: a report that shows it is then out of date.
bool mnuDeleteItem_Click(Cleanup command, ui::Host& host);

}  // namespace tools
