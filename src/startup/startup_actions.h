// What the user can do with a row of the startup list.
#pragma once

#include "ui/host.h"
#include "ui/list_view.h"
#include "win/backup_folder.h"

#include <optional>
#include <string>
#include <string_view>

namespace startup {

// The cells of a row, taken before anything that may let the list change.
struct StartupEntry {
    std::wstring name;
    std::wstring value;
    std::wstring location;  // a folder, or a scope tag and a registry key
    std::wstring description;
    bool has_embedded_nul = false;  // kEmbeddedNul
    std::wstring file_name = {};    // with the blanks at its ends; empty where it is the name that is shown
};

// The row of that index; nothing for -1.
std::optional<StartupEntry> StartupEntryAt(const ui::ListView& list, int row);

// A registry value rather than a file in a folder.
bool IsRegistryEntry(std::wstring_view location);

// The path of a folder entry's file, for calls that take it as it stands (extended), so that dots and blanks at the end
// of its name count; meaningless for a registry entry.
std::wstring EntryFile(const StartupEntry& entry);

// After a question, deletes the registry value or the file in the startup folder. True when the list is to be
// refreshed; false after Cancel and where the registry key cannot be written. A value whose name goes on behind a NUL
// stays, and so does the one that has the shown part for its name.
bool DeleteStartupEntry(const StartupEntry& entry, const win::BackupFolder& backup, ui::Host& host);

// Opens the startup folder in the Explorer, or the registry key in the registry editor.
void OpenStartupLocation(const std::wstring& location);

}  // namespace startup
