#include "programs/modReg.h"

#include "win/handle.h"
#include "win/system_library.h"
#include "win/system_text.h"
#include "win/text.h"

#include <algorithm>
#include <cstring>
#include <set>
#include <utility>

namespace programs {
namespace {

constexpr DWORD kValueBytes = 256;
constexpr DWORD kSubkeyNameLength = 512;
constexpr int kMostReadings = 3;

// What tells that subkeys have come or gone.
struct KeyState {
    DWORD subkeys = 0;
    FILETIME written = {};

    explicit KeyState(HKEY key) {
        RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &subkeys, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                         &written);
    }
    bool operator==(const KeyState& other) const {
        return subkeys == other.subkeys && written.dwLowDateTime == other.written.dwLowDateTime &&
               written.dwHighDateTime == other.written.dwHighDateTime;
    }
};

// Names in the order in which they were told first, each once.
class Names {
public:
    void add(std::wstring_view name) {
        if (known_.insert(win::LowerCase(name)).second) names_.emplace_back(name);
    }
    std::vector<std::wstring> take() { return std::move(names_); }

private:
    std::set<std::wstring> known_;
    std::vector<std::wstring> names_;
};

void AddSubkeyNames(HKEY key, Names& names) {
    wchar_t name[kSubkeyNameLength] = {};
    for (DWORD index = 0;; ++index) {
        DWORD length = kSubkeyNameLength;
        FILETIME written = {};
        if (RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, &written) != ERROR_SUCCESS) return;
        names.add(win::CutAtNul({name, length}));
    }
}

}  // namespace

std::span<const Hive> Hives() {
    static const Hive scopes[] = {
        {HKEY_LOCAL_MACHINE, L"HKEY_LOCAL_MACHINE\\", L"(全ユーザー)"},
        {HKEY_CURRENT_USER, L"HKEY_CURRENT_USER\\", L"(個別ユーザー)"},
    };
    return scopes;
}

std::wstring_view RegistryText(const wchar_t* buffer, DWORD bytes) {
    return win::CutAtNul({buffer, bytes / sizeof(wchar_t)});
}

RegistryValue ReadRegistryValue(HKEY root, std::wstring_view key_path, std::wstring_view name,
                                RegistryValue otherwise) {
    const std::string ansi_path = win::ToAnsi(key_path);
    win::RegKey key;
    const auto open = [&](REGSAM access) { return RegOpenKeyExA(root, ansi_path.c_str(), 0, access, key.put()); };
    if (const LONG result = open(KEY_ALL_ACCESS);
        result != ERROR_SUCCESS && (result != ERROR_ACCESS_DENIED || open(KEY_READ) != ERROR_SUCCESS)) {
        return std::wstring(kKeyOpenError);
    }
    wchar_t buffer[kValueBytes / sizeof(wchar_t)] = {};
    DWORD bytes = kValueBytes;
    DWORD type = REG_NONE;
    if (RegQueryValueExW(key.get(), std::wstring(name).c_str(), nullptr, &type, reinterpret_cast<BYTE*>(buffer),
                         &bytes) != ERROR_SUCCESS) {
        return otherwise;
    }
    if (type == REG_SZ) return std::wstring(RegistryText(buffer, bytes));
    if (type != REG_DWORD) return std::wstring(kUndefinedDataType);
    std::uint32_t number = 0;
    std::memcpy(&number, buffer, sizeof number);
    return number;
}

std::vector<std::wstring> EnumerateSubkeyNames(HKEY root, std::wstring_view key_path) {
    constexpr REGSAM kAccess = KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE;
    win::RegKey key;
    if (RegOpenKeyExW(root, std::wstring(key_path).c_str(), 0, kAccess, key.put()) != ERROR_SUCCESS) return {};
    // Subkeys are told by their number: one that goes shifts another out of sight. What one reading has missed another
    // one tells.
    Names all;
    for (int reading = 0; reading < kMostReadings; ++reading) {
        const KeyState before(key.get());
        Names names;
        AddSubkeyNames(key.get(), names);
        std::vector<std::wstring> told = names.take();
        if (KeyState(key.get()) == before) return told;
        for (const std::wstring& name : told)
            all.add(name);
    }
    return all.take();
}

std::wstring GetFileVersionText(std::wstring_view path) {
    // Imported, the library would be taken from the program's own folder by Windows 7 and later.
    const win::Module library = win::LoadSystemLibrary(L"version.dll");
    const auto get_size =
        win::FindFunction<decltype(&GetFileVersionInfoSizeA)>(library.get(), "GetFileVersionInfoSizeA");
    const auto get_info = win::FindFunction<decltype(&GetFileVersionInfoA)>(library.get(), "GetFileVersionInfoA");
    const auto query_value = win::FindFunction<decltype(&VerQueryValueA)>(library.get(), "VerQueryValueA");
    if (!get_size || !get_info || !query_value) return {};

    const std::string ansi_path = win::ToAnsi(path);
    DWORD ignored = 0;
    std::vector<std::byte> record(get_size(ansi_path.c_str(), &ignored));
    void* found = nullptr;
    UINT length = 0;
    if (record.empty() || !get_info(ansi_path.c_str(), 0, static_cast<DWORD>(record.size()), record.data()) ||
        !query_value(record.data(), "\\", &found, &length)) {
        return {};
    }
    VS_FIXEDFILEINFO info = {};
    std::memcpy(&info, found, std::min<std::size_t>(length, sizeof info));
    return win::ToText(HighWord(info.dwFileVersionMS)) + L"." + win::ToText(LowWord(info.dwFileVersionMS)) + L"." +
           win::ToText(HighWord(info.dwFileVersionLS)) + L"." + win::ToText(LowWord(info.dwFileVersionLS));
}

}  // namespace programs
