// One subkey of the Uninstall registry key, as an installer left it.
#pragma once

#include "startup/command_path.h"
#include "win/platform.h"

#include <cstdint>
#include <optional>
#include <string>

namespace programs {

struct UninstallEntry {
    std::wstring key_name;
    std::wstring display_name;
    std::wstring publisher;
    std::wstring uninstall_command;
    std::optional<std::uint32_t> estimated_size;  // kilobytes
    std::wstring install_date;
    std::optional<std::wstring> install_location;  // the value may exist and be empty
    std::optional<std::wstring> display_icon;      // read only when icons are shown
    bool is_update = false;
};

// What the View menu says. The scan looks at it once per entry.
struct ScanOptions {
    bool show_icons = false;
    bool show_system_components = false;
};

// Reads the subkey `key_name` of `parent_path`, which ends with a backslash. Nothing for a key that cannot be opened,
// that has no uninstall command, or that is a system component while those are hidden. Values are taken whatever
// their type; a text of more than 512 bytes counts as missing.
std::optional<UninstallEntry> ReadUninstallEntry(HKEY root, const std::wstring& parent_path,
                                                 const std::wstring& key_name, const ScanOptions& options);

// The file whose icon an entry shows: DisplayIcon without index and quotes, else the program that uninstalls it.
std::wstring IconPath(const UninstallEntry& entry, startup::FileProbe& probe);

}  // namespace programs
