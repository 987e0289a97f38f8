#include "win/recycle_bin.h"

#include "win/platform.h"

namespace win {

std::optional<RecycleBin> QueryRecycleBin(const std::string& root) {
    SHQUERYRBINFO record = {};
    static_assert(sizeof record == (sizeof(void*) == 8 ? 24 : 20));
    record.cbSize = sizeof record;
    if (FAILED(SHQueryRecycleBinA(root.c_str(), &record))) return {};
    return RecycleBin{static_cast<std::uint64_t>(record.i64Size), static_cast<std::uint64_t>(record.i64NumItems)};
}

}  // namespace win
