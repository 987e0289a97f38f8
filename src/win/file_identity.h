// Which file or folder something is, whatever path leads to it: links, junctions, short names, substituted drives.
#pragma once

#include "win/platform.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace win {

struct FileIdentity {
    DWORD volume = 0;  // its serial number
    std::uint64_t index = 0;

    auto operator<=>(const FileIdentity&) const = default;
};

// Links are followed. Nothing for what cannot be opened.
std::optional<FileIdentity> IdentityOf(const std::wstring& path);

}  // namespace win
