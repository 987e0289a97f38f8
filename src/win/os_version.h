// The version of Windows as the program sees it.
#pragma once

namespace win {

// 5.0 is Windows 2000, 5.1 XP, 6.0 Vista, 6.1 Windows 7.
struct VersionNumber {
    unsigned major = 0;
    unsigned minor = 0;

    bool operator<(const VersionNumber& other) const {
        return major != other.major ? major < other.major : minor < other.minor;
    }
};

struct OsVersion {
    unsigned platform = 0;  // 1: Windows 95, 98, Me; 2: NT family
    unsigned major = 0;
    unsigned minor = 0;

    VersionNumber number() const { return {major, minor}; }
    bool IsAtLeast(unsigned wanted_major, unsigned wanted_minor) const {
        return !(number() < VersionNumber{wanted_major, wanted_minor});
    }
};

// GetVersionExW. Without a compatibility entry in the manifest, Windows 8.1 and later answer 6.2. All zero when
// the call fails.
OsVersion QueryOsVersion();

// System Restore exists on Windows Me, on XP and on everything from Vista on, not on 2000, Server 2003, 95 and 98.
bool HasSystemRestore(const OsVersion& version);

}  // namespace win
