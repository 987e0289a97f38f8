// Random registry values, and what a plain reader without bounds finds in a key.
#pragma once

#include "programs/detail_link.h"
#include "support/hostile.h"
#include "support/native_names.h"
#include "support/show.h"
#include "win/text.h"

#include <optional>
#include <span>

namespace hostile {

// Values that have broken something, or might: every place that is read meets each of them, in this order, before the
// random ones.
struct NastyValue {
    DWORD type;
    std::wstring_view text;
    std::size_t bytes;  // the size of the value: the text is cut off there, or goes on with bytes 0x30
};

// First those that were found: as long as a buffer and without an end.
inline constexpr NastyValue kNastyValues[] = {{REG_SZ, L"C:\\"sv, 2 * MAX_PATH},
                                              {REG_EXPAND_SZ, L"%windir%\\"sv, 2 * MAX_PATH},
                                              {REG_BINARY, L""sv, 256},
                                              {REG_SZ, L""sv, 0},
                                              {REG_SZ, L"A"sv, 1},
                                              {REG_EXPAND_SZ, L"%"sv, 2},
                                              {REG_DWORD, L""sv, 0},
                                              {REG_DWORD, L""sv, 3},
                                              {REG_DWORD, L"\xFFFF\xFFFF"sv, 5},
                                              {REG_QWORD, L"\xFFFF\xFFFF\xFFFF\xFFFF"sv, 8},
                                              {REG_SZ, L"\xD800"sv, 255},
                                              {REG_SZ, L"\"C:\\"sv, 257},
                                              {REG_SZ, L"\"C:\\"sv, 511},
                                              {REG_SZ, L"http://"sv, 512},
                                              {REG_SZ, L"http://"sv, 513},
                                              {REG_MULTI_SZ, L"a\0b\0\0"sv, 1023},
                                              {REG_SZ, L"%programfiles%"sv, 1024},
                                              {REG_SZ, L"too long"sv, 1025},
                                              {REG_SZ, L"far too long"sv, 1U << 20},
                                              {REG_NONE, L"none"sv, 8},
                                              {REG_LINK, L"\\Registry\\Machine\\Software"sv, 58},
                                              {REG_MULTI_SZ, L"\0\0\0"sv, 6},
                                              {0xFFFFFFFF, L"no type\0"sv, 16}};

using Cells = std::vector<std::wstring>;
using Rows = std::vector<Cells>;

// The bytes as UTF-16 up to the first NUL, a last odd one dropped: how the program takes every value of text.
inline std::wstring TextOf(const Bytes& bytes) {
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::copy_n(bytes.begin(), text.size() * sizeof(wchar_t), reinterpret_cast<std::byte*>(text.data()));
    return std::wstring(win::CutAtNul(text));
}

inline std::uint32_t NumberOf(const Bytes& bytes) {
    std::uint32_t number = 0;
    std::copy_n(bytes.begin(), std::min(bytes.size(), sizeof number), reinterpret_cast<std::byte*>(&number));
    return number;
}

struct Value {
    DWORD type = REG_NONE;
    Bytes bytes;
};

inline Value ValueOf(DWORD type, std::wstring_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {type, {bytes.begin(), bytes.end()}};
}

// What a round puts in: first the known values in turn, then random ones.
inline Value ValueFor(Source& source, std::uint64_t round) {
    constexpr DWORD types[] = {REG_SZ,       REG_SZ,    REG_SZ,     REG_SZ,     REG_EXPAND_SZ,
                               REG_MULTI_SZ, REG_DWORD, REG_NONE,   REG_BINARY, REG_LINK,
                               REG_QWORD,    12,        0x7FFFFFFF, 0xFFFFFFFF};
    if (round < std::size(kNastyValues)) {
        Value value = ValueOf(kNastyValues[round].type, kNastyValues[round].text);
        value.bytes.resize(kNastyValues[round].bytes, std::byte{0x30});
        return value;
    }
    Value value = ValueOf(source.pick(types), source.text() + std::wstring(source.below(3), L'\0'));
    if (source.once_in(5)) value.bytes.resize(source.size(), std::byte{0x30});
    if (source.once_in(4)) value.bytes = source.bytes(source.size());
    while (source.once_in(4))
        source.mutate(value.bytes);
    return value;
}

// A name that the registry takes: at most `longest` code units, without a backslash.
inline std::wstring MakeName(Source& source, std::size_t longest) {
    std::wstring name = source.once_in(8) ? std::wstring(longest - source.below(3), source.unit()) : source.text();
    std::ranges::replace(name, L'\\', L'/');
    return name.substr(0, longest);
}

inline void Set(HKEY key, std::wstring_view name, const Value& value) {
    native::SetValue(key, std::wstring(name), value.type, value.bytes);
}

// The bytes of a value; nothing when it is missing or has more than `most`.
inline std::optional<Bytes> Read(HKEY key, const wchar_t* name, std::size_t most) {
    DWORD size = 0;
    if (RegQueryValueExW(key, name, nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS || size > most) return {};
    Bytes bytes(size);
    RegQueryValueExW(key, name, nullptr, nullptr, reinterpret_cast<BYTE*>(bytes.data()), &size);
    return bytes;
}

// A click on a label of this text leads nowhere unless it looks like a link.
inline void CheckLink(const std::wstring& text) {
    REQUIRE(text.find(L'\0') == text.npos);
    REQUIRE((programs::LooksLikeLink(text) || programs::FindDetailLink(text).kind == programs::LinkKind::None));
}

}  // namespace hostile
