// The system report: the facts of this machine, asked anew for every report. A fact that cannot be had is empty.
#pragma once

#include "win/platform.h"

#include <string>

namespace sysinfo {

// The report as text. `system_directory` without a backslash at the end. Waits where the resolution of the own host
// name does.
std::wstring BuildSystemReport(const std::wstring& system_directory);

// GetVersionExW, GetProductInfo and IsWow64Process where there are any.
std::wstring GetOSName();

// Whether this is a 32-bit program on 64-bit Windows.
bool IsWow64();

// The first IPv4 address of the own host name, "192.168.0.3". gethostbyname.
std::wstring GetIPAddress();

std::wstring GetDisplayInches();
std::wstring GetKeyboardTypeName();
std::wstring GetKeyboardSubtypeName();

// What the recycle bins of all drives hold.
std::wstring GetRecycleBinSummary();

}  // namespace sysinfo
