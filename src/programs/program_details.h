// The support details of a listed program.
#pragma once

#include "programs/uninstall_key.h"

#include <string>
#include <string_view>

namespace programs {

struct ProgramDetails {
    std::wstring help_link;       // "サポート："
    std::wstring url_info_about;  // "URL："
    std::wstring help_telephone;  // "HelpTel："
};

// Reads the details from the uninstall key `key_name` of that place; of the machine's own and the user's from the
// machine's, or where that does not exist from the user's. A value that is missing or has more than 256 bytes in the
// system's code page, its terminator included, is empty (RegQueryValueExA).
ProgramDetails ReadProgramDetails(UninstallPlace place, std::wstring_view key_name, std::wstring_view user_sid);

}  // namespace programs
