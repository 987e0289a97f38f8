// The version of Windows as the program sees it.
#pragma once

#include <string>

namespace win {

struct OsVersion {
    unsigned platform = 0;  // 1: Windows 95, 98, Me; 2: NT family
    unsigned major = 0;
    unsigned minor = 0;

    // major + minor x 0.1 in tenths, so that 5.1 is 51 and comparisons are exact.
    unsigned tenths() const { return major * 10 + minor; }
};

inline constexpr unsigned kWindows2000 = 50;  // in tenths

// GetVersionExW. Without a compatibility entry in the manifest, Windows 8.1 and later answer 6.2. All zero when
// the call fails.
OsVersion QueryOsVersion();

// System Restore exists on Windows Me, on XP and on everything from Vista on, not on 2000, Server 2003, 95 and 98.
bool HasSystemRestore(const OsVersion& version);

}  // namespace win
