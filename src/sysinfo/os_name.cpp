#include "sysinfo/os_name.h"

#include "win/text.h"

#include <array>

namespace sysinfo {
namespace {

constexpr wchar_t kUnknownWindows[] = L"Windows ??";

constexpr unsigned kPlatformNt = 2;  // VER_PLATFORM_WIN32_NT

constexpr unsigned kPersonalSuite = 0x200;  // Home Edition

// By product number.
constexpr std::array<const wchar_t*, 30> kEditions = {
    L"An unknown product",
    L"Ultimate Edition",
    L"Home Basic Edition",
    L"Home Premium Edition",
    L"Enterprise Edition",
    L"Home Basic Edition",
    L"Business Edition",
    L"Server Standard Edition (full installation)",
    L"Server Datacenter Edition (full installation)",
    L"Small Business Server",
    L"Server Enterprise Edition (full installation)",
    L"Starter Edition",
    L"Server Datacenter Edition (core installation)",
    L"Server Standard Edition (core installation)",
    L"Server Enterprise Edition (core installation)",
    L"Server Enterprise Edition for Itanium-based Systems",
    L"Business Edition",
    L"Web Server Edition (full installation)",
    L"Cluster Server Edition",
    L"Home Server Edition",
    L"Storage Server Express Edition",
    L"Storage Server Standard Edition",
    L"Storage Server Workgroup Edition",
    L"Storage Server Enterprise Edition",
    L"Server for Small Business Edition",
    L"Small Business Server Premium Edition",
    L"Home Premium Edition",
    L"Enterprise Edition",
    L"Ultimate Edition",
    L"Web Server Edition (core installation)",
};

std::wstring NameOfVersion4(const SystemVersion& version) {
    switch (version.minor) {
        case 0:
            if (version.service_pack == L"C") return L"Windows 95 OSR2";
            return version.platform == kPlatformNt ? L"Windows NT 4.0" : L"Windows 95";
        case 10:
            return version.service_pack == L"A" ? L"Windows 98 SE" : L"Windows 98";
        case 90:
            return L"Windows Me";
        default:
            return kUnknownWindows;
    }
}

// Server 2003 and XP x64 (5.2) stay without a name.
std::wstring NameOfVersion5(const SystemVersion& version) {
    if (version.minor == 0) return L"Windows 2000";
    if (version.minor != 1) return {};
    return (*version.suite & kPersonalSuite) != 0 ? L"Windows XP Home Edition" : L"Windows XP Professional Edition";
}

// The blank behind the family stays also where there is no edition.
std::wstring NameOfVersion6(const SystemVersion& version) {
    const wchar_t* const family = version.minor == 0 ? L"Windows Vista " : L"Windows 7 ";
    return family + ProductEdition(version.product) + (version.is_64_bit ? L" 64bit" : L" 32bit");
}

std::wstring WithNumbers(const std::wstring& name, const SystemVersion& version) {
    return name + L" " + win::ToText(version.major) + L"." + win::ToText(version.minor) + L" Build:" +
           win::ToText(version.build & 0xFFFF) + L" " + version.service_pack;
}

}  // namespace

std::wstring OSName(const SystemVersion& version) {
    if (version.major == 3) return L"Windows NT 3.51";
    if (version.major < 3) return kUnknownWindows;
    if (version.major == 4) return WithNumbers(NameOfVersion4(version), version);
    if (!version.suite) return {};
    if (version.major == 5) return WithNumbers(NameOfVersion5(version), version);
    if (version.major != 6) return kUnknownWindows;
    return version.minor < 2 ? WithNumbers(NameOfVersion6(version), version) : std::wstring();
}

std::wstring ProductEdition(std::optional<unsigned> product) {
    return product && *product < kEditions.size() ? kEditions[*product] : std::wstring();
}

}  // namespace sysinfo
