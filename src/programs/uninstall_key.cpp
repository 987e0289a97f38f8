#include "programs/uninstall_key.h"

#include <string>

namespace programs {

win::RegKey OpenUninstallKey(std::wstring_view key_name, std::wstring_view user_sid) {
    std::wstring path = kUninstallKey;
    if (!key_name.empty()) path.append(1, L'\\').append(key_name);
    const std::wstring user_path = std::wstring(user_sid) + L"\\" + path;
    win::RegKey key;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE, key.put()) != ERROR_SUCCESS) {
        RegOpenKeyExW(HKEY_USERS, user_path.c_str(), 0, KEY_QUERY_VALUE, key.put());
    }
    return key;
}

}  // namespace programs
