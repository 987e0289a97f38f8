#include "win/os_version.h"

#include "win/platform.h"

namespace win {

OsVersion QueryOsVersion() {
    OSVERSIONINFOW record = {};
    record.dwOSVersionInfoSize = sizeof record;
    if (!GetVersionExW(&record)) return {};
    return {record.dwPlatformId, record.dwMajorVersion, record.dwMinorVersion};
}

bool HasSystemRestore(const OsVersion& version) {
    if (version.platform == VER_PLATFORM_WIN32_WINDOWS) return version.minor == 90;
    if (version.platform != VER_PLATFORM_WIN32_NT) return false;
    return version.major > 5 || (version.major == 5 && version.minor == 1);
}

}  // namespace win
