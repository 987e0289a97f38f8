// What the user can do with a row of the lists of programs and updates.
#pragma once

#include "programs/uninstall_key.h"
#include "ui/host.h"
#include "ui/list_view.h"
#include "win/backup_folder.h"

#include <optional>
#include <string>
#include <string_view>

namespace programs {

// A row, taken before anything that may let the list change.
struct ProgramRow {
    std::wstring name;
    std::wstring install_folder;
    bool empty_install_folder = false;  // the registry value exists, but is empty
    std::wstring uninstall_command;
    UninstallPlace place = UninstallPlace::Machine;
    std::wstring key_name;
};

// The row of that index; nothing for -1.
std::optional<ProgramRow> ProgramAt(const ui::ListView& list, int row);

// Runs the uninstall command and waits for its process. True when it ran and the lists are to be scanned again.
bool Uninstall(const ProgramRow& row, ui::Host& host);

// After a question, deletes the row's registry key below the machine's Uninstall key that it stands in; below the
// user's only where the machine has none at all, so the key of a user's own program stays. A key with subkeys stays
// too. True when the lists are to be scanned again.
bool ForcedUninstall(const ProgramRow& row, std::wstring_view user_sid, const win::BackupFolder& backup,
                     ui::Host& host);

// Opens the Explorer at the install folder; nothing for a row without one, or whose value names a file.
void OpenInstallFolder(const ProgramRow& row);

// The command line for that; empty for a row without install folder.
std::wstring InstallFolderCommand(const ProgramRow& row);

}  // namespace programs
