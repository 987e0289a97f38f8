#include "programs/uninstall_key.h"

#include "win/edition.h"

#include <span>

namespace programs {
namespace {

constexpr wchar_t kUninstall[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
constexpr wchar_t kUninstall32[] = L"SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

struct Place {
    UninstallPlace place;
    HKEY root;
    const wchar_t* path;
    bool listed = true;
};

// In the order of UninstallPlace.
std::span<const Place> Places() {
    static const Place places[] = {
        {UninstallPlace::Machine, HKEY_LOCAL_MACHINE, kUninstall},
        {UninstallPlace::Machine32, HKEY_LOCAL_MACHINE, kUninstall32, win::kIs64Bit},
        {UninstallPlace::User, HKEY_USERS, kUninstall},
    };
    return places;
}

win::RegKey Open(UninstallPlace place, std::wstring_view key_name, std::wstring_view user_sid) {
    UninstallKey key = FindUninstallKey(place, user_sid);
    if (!key_name.empty()) key.path.append(1, L'\\').append(key_name);
    win::RegKey opened;
    RegOpenKeyExW(key.root, key.path.c_str(), 0, KEY_QUERY_VALUE, opened.put());
    return opened;
}

}  // namespace

std::vector<UninstallPlace> UninstallPlaces() {
    std::vector<UninstallPlace> listed;
    for (const Place& each : Places()) {
        if (each.listed) listed.push_back(each.place);
    }
    return listed;
}

UninstallKey FindUninstallKey(UninstallPlace place, std::wstring_view user_sid) {
    const Place& row = Places()[static_cast<std::size_t>(place)];
    if (place != UninstallPlace::User) return {row.root, row.path};
    return {row.root, std::wstring(user_sid) + L"\\" + row.path};
}

win::RegKey OpenUninstallKey(UninstallPlace place, std::wstring_view key_name, std::wstring_view user_sid) {
    if (place == UninstallPlace::Machine32) return Open(place, key_name, user_sid);
    win::RegKey key = Open(UninstallPlace::Machine, key_name, user_sid);
    return key ? std::move(key) : Open(UninstallPlace::User, key_name, user_sid);
}

}  // namespace programs
