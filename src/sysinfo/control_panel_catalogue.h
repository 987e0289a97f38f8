// The applets and tools that the Control Panel list knows, as a table.
#pragma once

#include "win/os_version.h"

#include <limits>
#include <span>

namespace sysinfo {

enum class Folder { None, System, Programs, Windows };

// A file in one of the machine's folders. Without a folder the name stands as it is.
struct Location {
    Folder folder = Folder::None;
    const wchar_t* name = nullptr;

    constexpr explicit operator bool() const { return name != nullptr; }
};

// Both ends included.
struct VersionRange {
    win::VersionNumber from = {};
    win::VersionNumber to = {std::numeric_limits<unsigned>::max(), 0};
};

struct CatalogueRow {
    const wchar_t* name;
    const wchar_t* comment;
    // The row is there when this file is; without a file, when its icon is.
    Location file = {};
    Location icon = {};  // none: the file's own
    int icon_index = 0;
    // What the row opens; none: the file followed by `parameters`.
    const wchar_t* path = nullptr;
    const wchar_t* parameters = L"";
    VersionRange versions = {};
    bool always = false;  // with or without its icon
};

// In the order of the list.
std::span<const CatalogueRow> ControlPanelCatalogue();

}  // namespace sysinfo
