// The registry keys that describe the installed programs.
#pragma once

#include "win/handle.h"

#include <string>
#include <string_view>
#include <vector>

namespace programs {

// Where a program is registered: among the machine's that this edition sees by nature, among the machine's 32-bit ones
// as a 64-bit program finds them, or among the user's own.
enum class UninstallPlace { Machine, Machine32, User };

// The places that this edition lists, in the order of the lists.
std::vector<UninstallPlace> UninstallPlaces();

struct UninstallKey {
    HKEY root;
    std::wstring path;  // without a backslash at the end
};

// The Uninstall key of a place. The user's lies below the key of their security identifier.
UninstallKey FindUninstallKey(UninstallPlace place, std::wstring_view user_sid);

// Opens the subkey `key_name` of a place; an empty name opens the Uninstall key itself. Of the machine's own and the
// user's it is the machine's or, only where that cannot be opened, the user's. RegOpenKeyExW with KEY_QUERY_VALUE;
// empty when it fails.
win::RegKey OpenUninstallKey(UninstallPlace place, std::wstring_view key_name, std::wstring_view user_sid);

}  // namespace programs
