// Deleting the contents of a folder, and the recycle bin.
#pragma once

#include "ui/host.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tools {

// The items in all recycle bins; 0 when the query fails.
std::uint64_t GetRecycleBinCount();

// Empties the recycle bin (SHEmptyRecycleBinA). With `confirm` the program asks instead of the shell, and an empty bin
// or a failing query ends it without a question; otherwise `flags` are the shell's (SHERB_...). True when the bin was
// emptied.
bool EmptyRecycleBin(bool confirm, const std::string& root, DWORD flags, ui::Host& host);

// Deletes the contents of `folder`, which is the real path of a folder on a drive ("C:\Temp", no link in it), with all
// folders below that `pattern` finds; the folder itself stays. System files stay, and what Windows refuses to delete.
// What a link, junction or mount point leads to is never touched, nor is the link. Lets the window breathe and stops
// at the next entry when a close waits.
void DeleteFolderContents(const std::wstring& folder, std::wstring_view pattern, ui::Host& host);

}  // namespace tools
