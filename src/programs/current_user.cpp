#include "programs/current_user.h"

#include "win/handle.h"

#include <sddl.h>

#include <cstddef>

namespace programs {

std::wstring CurrentUserSid() {
    win::Handle token;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.put())) return {};
    alignas(TOKEN_USER) std::byte user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    DWORD size = 0;
    if (!GetTokenInformation(token.get(), TokenUser, user, sizeof user, &size)) return {};
    wchar_t* text = nullptr;
    if (!ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(user)->User.Sid, &text)) return {};
    const win::LocalMemory owned(text);
    return text;
}

}  // namespace programs
