#include "programs/program_details.h"

#include "win/system_text.h"

namespace programs {
namespace {

constexpr DWORD kValueBytes = 256;

std::wstring ReadText(HKEY key, const char* name) {
    char buffer[kValueBytes] = {};
    DWORD bytes = kValueBytes;
    if (RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &bytes) != ERROR_SUCCESS) {
        return {};
    }
    const std::string_view text(buffer, bytes);
    return win::FromAnsi(text.substr(0, text.find('\0')));
}

}  // namespace

ProgramDetails ReadProgramDetails(UninstallPlace place, std::wstring_view key_name, std::wstring_view user_sid) {
    const win::RegKey key = OpenUninstallKey(place, key_name, user_sid);
    if (!key) return {};
    return {ReadText(key.get(), "HelpLink"), ReadText(key.get(), "URLInfoAbout"), ReadText(key.get(), "HelpTelephone")};
}

}  // namespace programs
