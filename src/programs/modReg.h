// Thin readers of the registry and of a file's version. None of them shows a message: failure is part of the result.
#pragma once

#include "win/platform.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace programs {

// A hive that the lists show entries of.
struct Hive {
    HKEY root;
    std::wstring_view root_name;  // with the backslash behind it, as the registry editor begins a path
    // Written in front of a registry key's path, without a separator, and read back by position: the only link between
    // a shown entry and its hive.
    std::wstring_view tag;
};

// HKEY_LOCAL_MACHINE and HKEY_CURRENT_USER, in this order.
std::span<const Hive> Hives();

inline constexpr std::wstring_view kKeyOpenError = L"キーオープンエラー";
inline constexpr std::wstring_view kUndefinedDataType = L"未定義データタイプ";

// A string, or the number of a REG_DWORD from 0 to 4294967295.
using RegistryValue = std::variant<std::wstring, std::uint32_t>;

// The value `name` of the key `key_path` (written without the root's name). RegOpenKeyExA with all access, or with
// read access where that is refused, then one RegQueryValueExW into 256 bytes, so that a string has at most 127
// characters. A key that cannot be opened gives kKeyOpenError, a type other than REG_SZ and REG_DWORD
// kUndefinedDataType, a value that is missing or too long `otherwise`.
RegistryValue ReadRegistryValue(HKEY root, std::wstring_view key_path, std::wstring_view name,
                                RegistryValue otherwise = {});

// The names of all subkeys in the order in which the registry returns them (RegEnumKeyExW), each once; empty when the
// key cannot be opened. Subkeys that come or go meanwhile may be told or not, and hide no other: the key is then read
// again, three times at most. A backslash at the end of `key_path` is allowed.
std::vector<std::wstring> EnumerateSubkeyNames(HKEY root, std::wstring_view key_path);

// The file version as four numbers, for example "6.0.2600.0"; empty for a file without one. GetFileVersionInfoA.
std::wstring GetFileVersionText(std::wstring_view path);

// The upper 16 bits as a signed number, the lower 16 bits as an unsigned one.
constexpr std::int32_t HighWord(std::uint32_t value) { return static_cast<std::int32_t>(value & 0xFFFF0000U) / 65536; }
constexpr std::int32_t LowWord(std::uint32_t value) { return static_cast<std::int32_t>(value & 0xFFFFU); }

constexpr std::int32_t MakeLong(std::uint32_t high, std::uint32_t low) {
    return static_cast<std::int32_t>(high * 65536U | low);
}

// The bytes of a registry string as text: up to the byte count that the registry returned, an odd last byte dropped,
// then up to the first NUL. `buffer` holds the `bytes` and is not read beyond them.
std::wstring_view RegistryText(const wchar_t* buffer, DWORD bytes);

}  // namespace programs
