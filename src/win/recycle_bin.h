// What the recycle bins hold.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace win {

struct RecycleBin {
    std::uint64_t bytes = 0;
    std::uint64_t items = 0;
};

// All recycle bins below `root`, of all drives when it is empty (SHQueryRecycleBinA). Nothing when the query fails.
std::optional<RecycleBin> QueryRecycleBin(const std::string& root);

}  // namespace win
