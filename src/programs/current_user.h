// Who runs the program.
#pragma once

#include <string>

namespace programs {

// The security identifier of the process's user as text, for example "S-1-5-21-1-2-3-1000"; empty when the token
// cannot be read. ConvertSidToStringSidW.
std::wstring CurrentUserSid();

}  // namespace programs
