// Which file or folder something is, whatever path leads to it: links, junctions, short names, substituted drives.
#pragma once

#include "win/platform.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace win {

// The serial number of its volume, and its index there.
using FileIdentity = std::pair<DWORD, std::uint64_t>;

// Links are followed. Nothing for what cannot be opened.
std::optional<FileIdentity> IdentityOf(const std::wstring& path);

}  // namespace win
