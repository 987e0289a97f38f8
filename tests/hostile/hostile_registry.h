// Random registry values.
#pragma once

#include "support/hostile.h"
#include "support/native_names.h"
#include "support/show.h"
#include "win/text.h"

#include <span>

namespace hostile {

struct Value {
    DWORD type = REG_NONE;
    Bytes bytes;
};

// The bytes as UTF-16 up to the first NUL, a last odd one dropped: how the program takes every value of text.
inline std::wstring TextOf(const Bytes& bytes) {
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::copy_n(bytes.begin(), text.size() * sizeof(wchar_t), reinterpret_cast<std::byte*>(text.data()));
    return std::wstring(win::CutAtNul(text));
}

// What a round puts in: first paths without an end, as long as has broken something, or might; then random values.
inline Value ValueFor(Source& source, std::uint64_t round) {
    constexpr std::size_t sizes[] = {2 * MAX_PATH, 256, 0, 3, 5, 511, 512, 1024, 1U << 20};
    constexpr DWORD types[] = {REG_SZ,    REG_SZ,   REG_SZ,     REG_SZ,   REG_EXPAND_SZ, REG_MULTI_SZ,
                               REG_DWORD, REG_NONE, REG_BINARY, REG_LINK, REG_QWORD,     0xFFFFFFFF};
    const bool known = round / 2 < std::size(sizes);
    std::wstring text = round % 2 == 0 ? L"C:\\" : L"%windir%\\";
    if (!known) text = source.text() + std::wstring(source.below(3), L'\0');
    const auto bytes = std::as_bytes(std::span(text));
    Value value = {known ? REG_SZ : source.pick(types), {bytes.begin(), bytes.end()}};
    if (known || source.once_in(4)) value.bytes.resize(known ? sizes[round / 2] : source.size(), std::byte{0x30});
    while (!known && source.once_in(4))
        source.mutate(value.bytes);
    return value;
}

// A name that the registry takes: at most `longest` code units, without a backslash.
inline std::wstring MakeName(Source& source, std::size_t longest) {
    std::wstring name = source.text();
    if (source.once_in(8)) name.resize(longest - source.below(3), L'n');
    std::ranges::replace(name, L'\\', L'/');
    return name.substr(0, longest);
}

inline void Set(HKEY key, std::wstring_view name, const Value& value) {
    native::SetValue(key, std::wstring(name), value.type, value.bytes);
}

}  // namespace hostile
