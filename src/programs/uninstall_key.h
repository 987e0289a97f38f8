// The registry keys that describe the installed programs.
#pragma once

#include "win/handle.h"

#include <string_view>

namespace programs {

// Below HKEY_LOCAL_MACHINE and below each user's key in HKEY_USERS.
inline constexpr wchar_t kUninstallKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

// Opens the subkey `key_name` of the machine's Uninstall key or, only where that cannot be opened, of the user's; an
// empty name opens the Uninstall key itself. RegOpenKeyExW with KEY_QUERY_VALUE; empty when both fail.
win::RegKey OpenUninstallKey(std::wstring_view key_name, std::wstring_view user_sid);

}  // namespace programs
