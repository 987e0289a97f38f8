// Random registry values, and what a plain reader without bounds finds in a key.
#pragma once

#include "nasty_values.h"

#include "support/hostile.h"
#include "support/native_names.h"
#include "win/handle.h"
#include "win/text.h"

#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hostile {

inline Bytes BytesOf(std::wstring_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

// The bytes as UTF-16 up to the first NUL, a last odd one dropped: how the program takes every value of text.
inline std::wstring TextOf(const Bytes& bytes) {
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    return std::wstring(win::CutAtNul(text));
}

struct Value {
    DWORD type = REG_NONE;
    Bytes bytes;
};

inline Value ValueOf(const NastyValue& nasty) {
    Value value{nasty.type, BytesOf(nasty.text)};
    value.bytes.resize(nasty.bytes, std::byte{0x30});
    return value;
}

inline Value MakeValue(Source& source) {
    constexpr DWORD types[] = {REG_SZ,       REG_SZ,     REG_SZ,    REG_SZ,     REG_EXPAND_SZ,
                               REG_MULTI_SZ, REG_DWORD,  REG_NONE,  REG_BINARY, REG_DWORD_BIG_ENDIAN,
                               REG_LINK,     8,          9,         10,         REG_QWORD,
                               12,           0x7FFFFFFF, 0xFFFFFFFF};
    Value value{source.pick(types), {}};
    if (source.once_in(4)) {
        value.bytes = source.bytes(source.size());
    } else {
        std::wstring text = source.text();
        text.append(source.below(3), L'\0');
        value.bytes = BytesOf(text);
        if (source.once_in(5)) value.bytes.resize(source.size(), std::byte{0x30});
    }
    while (source.once_in(4))
        source.mutate(value.bytes);
    return value;
}

// What a round puts in: first the known values in turn, then random ones.
inline Value ValueFor(Source& source, std::uint64_t round) {
    return round < std::size(kNastyValues) ? ValueOf(kNastyValues[round]) : MakeValue(source);
}

// A name that the registry takes: at most `longest` code units, without a backslash.
inline std::wstring MakeName(Source& source, std::size_t longest) {
    std::wstring name = source.once_in(8) ? std::wstring(longest - source.below(3), source.unit()) : source.text();
    for (wchar_t& unit : name) {
        if (unit == L'\\') unit = L'/';
    }
    return name.substr(0, longest);
}

inline void Set(HKEY key, std::wstring_view name, const Value& value) {
    native::SetValue(key, std::wstring(name), value.type, value.bytes);
}

// A value whatever its length; nothing when it is missing.
inline std::optional<Value> Read(HKEY key, const wchar_t* name) {
    static Bytes buffer(2U << 20);
    auto size = static_cast<DWORD>(buffer.size());
    Value value;
    if (RegQueryValueExW(key, name, nullptr, &value.type, reinterpret_cast<BYTE*>(buffer.data()), &size) != 0)
        return {};
    value.bytes.assign(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(size));
    return value;
}

}  // namespace hostile
