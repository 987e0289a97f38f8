#include "sysinfo/modSystemInfo.h"

#include "programs/modReg.h"
#include "sysinfo/os_name.h"
#include "sysinfo/system_report.h"
#include "win/edition.h"
#include "win/handle.h"
#include "win/recycle_bin.h"
#include "win/size_text.h"
#include "win/system_library.h"
#include "win/text.h"

#include <optional>

namespace sysinfo {
namespace {

constexpr wchar_t kExplorerKey[] = L"SOFTWARE\\Microsoft\\Internet Explorer";
constexpr wchar_t kExplorerVersion[] = L"Version";
constexpr wchar_t kControlsLibrary[] = L"\\comctl32.dll";

constexpr DWORD kUserNameLength = 256;
constexpr int kHostNameLength = 64;
constexpr WORD kWinsockVersion = MAKEWORD(1, 1);

// Newer than Windows 2000.
using IsWow64ProcessFunction = BOOL(WINAPI*)(HANDLE, BOOL*);
using GetProductInfoFunction = BOOL(WINAPI*)(DWORD, DWORD, DWORD, DWORD, DWORD*);

template <class Function>
Function FindKernelFunction(const char* name) {
    return win::FindFunction<Function>(GetModuleHandleW(L"kernel32.dll"), name);
}

std::optional<unsigned> QueryProduct(const OSVERSIONINFOEXW& record) {
    const auto get_product_info = FindKernelFunction<GetProductInfoFunction>("GetProductInfo");
    DWORD product = 0;
    if (!get_product_info || !get_product_info(record.dwMajorVersion, record.dwMinorVersion, record.wServicePackMajor,
                                               record.wServicePackMinor, &product)) {
        return {};
    }
    return product;
}

// Winsock for the length of a scope. Loaded for the report alone, so that the window opens sooner.
class Winsock {
public:
    Winsock() : library_(win::LoadSystemLibrary(L"wsock32.dll")) {
        const auto start = find<decltype(&WSAStartup)>("WSAStartup");
        WSADATA data = {};
        started_ = start && start(kWinsockVersion, &data) == 0;
    }
    Winsock(const Winsock&) = delete;
    Winsock& operator=(const Winsock&) = delete;
    ~Winsock() {
        const auto clean_up = find<decltype(&WSACleanup)>("WSACleanup");
        if (started_ && clean_up) clean_up();
    }

    // The entry of the own host name; null when there is none. Winsock owns it.
    const hostent* own_entry() const {
        const auto host_name = find<decltype(&gethostname)>("gethostname");
        const auto host_by_name = find<decltype(&gethostbyname)>("gethostbyname");
        char host[kHostNameLength + 1] = {};
        if (!started_ || !host_name || !host_by_name || host_name(host, kHostNameLength) != 0) return nullptr;
        return host_by_name(host);
    }

private:
    template <class Function>
    Function find(const char* name) const {
        return win::FindFunction<Function>(library_.get(), name);
    }

    win::Module library_;
    bool started_ = false;
};

std::wstring GetUserNameText() {
    wchar_t name[kUserNameLength] = {};
    DWORD length = kUserNameLength;
    return GetUserNameW(name, &length) ? name : std::wstring();
}

std::wstring GetComputerNameText() {
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1] = {};
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    return GetComputerNameW(name, &length) ? name : std::wstring();
}

std::wstring GetExplorerVersion() {
    const programs::RegistryValue version =
        programs::ReadRegistryValue(HKEY_LOCAL_MACHINE, kExplorerKey, kExplorerVersion);
    if (const auto* const text = std::get_if<std::wstring>(&version)) return *text;
    return win::ToText(std::get<std::uint32_t>(version));
}

int ScreenWidth() { return GetSystemMetrics(SM_CXSCREEN); }
int ScreenHeight() { return GetSystemMetrics(SM_CYSCREEN); }

}  // namespace

std::wstring BuildSystemReport(const std::wstring& system_directory) {
    SystemFacts facts;
    facts.resolution = Resolution(ScreenWidth(), ScreenHeight());
    facts.keyboard_type = GetKeyboardTypeName();
    facts.keyboard_subtype = GetKeyboardSubtypeName();
    facts.function_keys = win::ToText(GetKeyboardType(2));
    facts.os_name = GetOSName();
    facts.user_name = GetUserNameText();
    facts.computer_name = GetComputerNameText();
    facts.ip_address = GetIPAddress();
    facts.display_inches = GetDisplayInches();
    facts.recycle_bin = GetRecycleBinSummary();
    facts.explorer_version = GetExplorerVersion();
    facts.controls_version = programs::GetFileVersionText(system_directory + kControlsLibrary);
    return SystemReportText(facts);
}

std::wstring GetOSName() {
    OSVERSIONINFOW plain = {};
    plain.dwOSVersionInfoSize = sizeof plain;
    if (!GetVersionExW(&plain)) return {};
    SystemVersion version;
    version.platform = plain.dwPlatformId;
    version.major = plain.dwMajorVersion;
    version.minor = plain.dwMinorVersion;
    version.build = plain.dwBuildNumber;
    version.service_pack = win::TrimBlanks(plain.szCSDVersion);
    OSVERSIONINFOEXW extended = {};
    extended.dwOSVersionInfoSize = sizeof extended;
    if (GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&extended))) {
        version.suite = extended.wSuiteMask;
        version.product = QueryProduct(extended);
    }
    version.is_64_bit = win::kIs64Bit || IsWow64();
    return OSName(version);
}

bool IsWow64() {
    const auto is_wow64_process = FindKernelFunction<IsWow64ProcessFunction>("IsWow64Process");
    BOOL wow64 = FALSE;
    return is_wow64_process && is_wow64_process(GetCurrentProcess(), &wow64) && wow64;
}

std::wstring GetIPAddress() {
    const Winsock winsock;
    const hostent* const entry = winsock.own_entry();
    if (!entry || entry->h_addrtype != AF_INET || !entry->h_addr_list[0]) return {};
    const auto* const bytes = reinterpret_cast<const unsigned char*>(entry->h_addr_list[0]);
    std::wstring address = win::ToText(unsigned{bytes[0]});
    for (int index = 1; index < 4; ++index)
        address += L"." + win::ToText(unsigned{bytes[index]});
    return address;
}

std::wstring GetDisplayInches() {
    const win::WindowDc screen(nullptr);
    return DisplayInches(ScreenWidth(), ScreenHeight(), GetDeviceCaps(screen.get(), LOGPIXELSX),
                         GetDeviceCaps(screen.get(), LOGPIXELSY));
}

std::wstring GetKeyboardTypeName() { return KeyboardTypeName(GetKeyboardType(0)); }

std::wstring GetKeyboardSubtypeName() { return KeyboardSubtypeName(GetKeyboardType(1)); }

std::wstring GetRecycleBinSummary() {
    const auto bin = win::QueryRecycleBin({});
    return bin ? win::FileTotalText(bin->items, bin->bytes) : std::wstring();
}

}  // namespace sysinfo
