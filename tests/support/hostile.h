// Hostile data for what the program reads from outside: random and mutated texts, bytes and registry values, the same
// for the same seed.
#pragma once

#include "support/native_names.h"
#include "support/show.h"
#include "win/text.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace hostile {

using namespace std::string_view_literals;

using Bytes = std::vector<std::byte>;

// Texts that have broken programs, or might, with a bar between each two: alone and pieced together they go wherever
// the program reads a text. Quotes and arguments, paths, variables, what decides about rows and links, code units that
// are no characters or not in the code page, numbers.
inline constexpr std::wstring_view kNastyTexts =
    L"¦ ¦\0¦hidden\0behind¦                                                                  ¦\r\n\t\v¦/:\\a"
    L"¦\"¦\"\"¦\"\"\"¦\" ¦\"C:\\Program Files\\a¦'¦ -¦ /¦ -/ -/¦,¦\",0¦,-2147483649¦\\¦\\\\¦\\??\\C:\\¦\\\\?\\"
    L"¦\\\\?\\C:\\windows¦\\\\.\\PhysicalDrive0¦\\\\server\\share\\a.exe¦:¦C:¦C:\\¦C:/windows/regedit.exe¦C:\\Program"
    L"¦C:\\windows\\..\\..\\..\\¦C:\\Program Files\\¦C:\\con\\con¦NUL¦a.exe:stream¦X:\\gone\\a.exe¦regedit.exe. . ."
    L"¦.¦..¦*?<>|¦.exe¦.lnk¦::{20D04FE0-3AEA-1069-A2D8-08002B30309D}¦shell:startup¦C:\\windows\\regedit.exe"
    L"¦%¦%%¦%ProgramFiles%\\a.exe /x¦%programfiles%%programfiles%¦%windir%\\regedit.exe¦%no such variable%¦%systemroot"
    L"¦KB¦(KB123456)¦Microsoft¦MsiExec.exe /X{90120000-0015-0411-0000-00FF1CE}¦(個別ユーザー)SOFTWARE\\¦<リンク切れ>"
    L"¦http://¦HTTPS://\xD800¦file:///C:/windows¦javascript:alert(1)¦mailto:¦表示ソ能¦İıẞǅ¦한국어 العربية¦\u202Eexe.txt"
    L"¦\xD800¦\xDC00\xD800¦\xD83D\xDE00¦\xFFFE\xFFFF\xFEFF¦e\x301\x301\x301\x301\x301¦\x01\x02\x1B\x7F\x80\x9F"
    L"¦-1¦4294967296¦99999999999999999999999999999999¦1e999¦20240231"sv;

inline std::vector<std::wstring_view> NastyTexts() {
    std::vector<std::wstring_view> texts;
    for (std::size_t from = 0, end = 0; end != kNastyTexts.npos; from = end + 1) {
        end = kNastyTexts.find(L'¦', from);
        texts.push_back(kNastyTexts.substr(from, end - from));
    }
    return texts;
}

// Random numbers and what is made of them.
class Source {
public:
    explicit Source(std::uint64_t seed) : engine_(seed) {}

    // From 0 to `count` - 1.
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(engine_() % count); }
    bool once_in(std::size_t count) { return below(count) == 0; }
    template <class Array>
    const auto& pick(const Array& array) {
        return array[below(std::size(array))];
    }

    // A size at which something may end: near a buffer's end, near 0, seldom huge.
    std::size_t size() {
        constexpr std::size_t starts[] = {0, 6, 126, 253, 254, 258, 510, 518, 1022, 2046};
        return once_in(400) ? 1U << 20 : pick(starts) + below(5);
    }

    std::wstring text() {
        static const std::vector<std::wstring_view> nasty = NastyTexts();
        std::wstring made;
        for (std::size_t pieces = 1 + below(3); pieces > 0; --pieces)
            made += pick(nasty);
        if (once_in(8)) made.resize(size() % 3000, static_cast<wchar_t>(below(0x10000)));
        while (once_in(3))
            mutate(made);
        return made;
    }

    // Some elements changed, doubled or taken out, or all that follow cut off.
    template <class Sequence>
    void mutate(Sequence& sequence) {
        using Element = typename Sequence::value_type;
        if (sequence.empty()) return;
        const auto place = sequence.begin() + static_cast<std::ptrdiff_t>(below(sequence.size()));
        const auto end = place + std::min<std::ptrdiff_t>(sequence.end() - place, 1 + engine_() % 16);
        const Sequence part(place, end);
        const std::size_t kind = below(5);
        if (kind == 0) *place = static_cast<Element>(below(0x10000));
        if (kind == 1) std::fill(place, end, static_cast<Element>(once_in(2) ? 0xFFFF : 0));
        if (kind == 2) sequence.insert(end, part.begin(), part.end());
        if (kind > 2) sequence.erase(place, kind == 3 ? end : sequence.end());
    }

private:
    std::mt19937_64 engine_;
};

struct Value {
    void set(HKEY key, std::wstring_view name) const { native::SetValue(key, std::wstring(name), type, bytes); }

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

// The rounds of a test: QORVENIX_SEED is another seed, QORVENIX_ROUNDS so many times the usual number of rounds.
template <class Round>
void Run(const char* name, std::uint64_t usual, Round&& run_round) {
    const auto variable = [](const char* of, const char* otherwise) {
        const char* const text = std::getenv(of);
        return std::strtoull(text && *text ? text : otherwise, nullptr, 10);
    };
    const std::uint64_t seed = variable("QORVENIX_SEED", "20080401");
    const std::uint64_t rounds = usual * variable("QORVENIX_ROUNDS", "1");
    std::printf("%s: %s rounds, QORVENIX_SEED=%s\n", name, std::to_string(rounds).c_str(),
                std::to_string(seed).c_str());
    Source source(seed);
    for (std::uint64_t round = 0; round < rounds; ++round) {
        CAPTURE(seed);
        CAPTURE(round);
        run_round(source, round);
    }
}

}  // namespace hostile
