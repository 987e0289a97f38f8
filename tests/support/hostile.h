// Hostile data for what the program reads from outside: random and mutated texts and bytes, the same for the same seed.
#pragma once

#include "support/nasty_texts.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <vector>

namespace hostile {

using Bytes = std::vector<std::byte>;

inline std::uint64_t Variable(const char* name, std::uint64_t otherwise) {
    const char* const text = std::getenv(name);
    return text && *text ? std::strtoull(text, nullptr, 10) : otherwise;
}

inline std::vector<std::wstring_view> NastyTexts() {
    std::vector<std::wstring_view> texts;
    for (std::size_t from = 0, end = 0; end != kNastyTexts.npos; from = end + 1) {
        end = kNastyTexts.find(L'¦', from);
        texts.push_back(kNastyTexts.substr(from, end - from));
    }
    return texts;
}

// Random numbers and what is made of them (xorshift64*; the library's own differ between machines).
class Source {
public:
    explicit Source(std::uint64_t seed) : state_(seed * 2 + 1) {}

    std::uint64_t next() {
        state_ ^= state_ >> 12;
        state_ ^= state_ << 25;
        state_ ^= state_ >> 27;
        return state_ * 0x2545F4914F6CDD1D;
    }
    std::uint32_t word() { return static_cast<std::uint32_t>(next() >> 32); }
    // From 0 to `count` - 1.
    std::size_t below(std::size_t count) { return word() % count; }
    bool once_in(std::size_t count) { return below(count) == 0; }
    template <class Array>
    const auto& pick(const Array& array) {
        return array[below(std::size(array))];
    }

    // A size at which something may end: near a buffer's end, near 0, seldom huge.
    std::size_t size() {
        constexpr std::size_t starts[] = {0, 0, 2, 6, 126, 253, 254, 258, 510, 518, 1022, 2046};
        if (once_in(400)) return 1U << 20;
        return once_in(40) ? 65536 + below(3) : pick(starts) + below(5);
    }

    wchar_t unit() {
        constexpr wchar_t units[] =
            L"\0\x01\t\n\r \"%&'(),-./09:;<>?A\\aeKkB~\x7F\x80\xA0\xFF表ソ能ﾊ～①髙İıẞ"
            L"\xD800\xDBFF\xDC00\xDFFF\x200B\x202E\x3000\xFEFF\xFFFE\xFFFF";
        return once_in(3) ? static_cast<wchar_t>(word() & 0xFFFF) : pick(units);
    }

    std::wstring text() {
        static const std::vector<std::wstring_view> nasty = NastyTexts();
        std::wstring made;
        if (once_in(4)) {
            made.resize(once_in(2) ? size() % 2000 : below(20));
            for (wchar_t& each : made)
                each = unit();
        } else {
            for (std::size_t pieces = 1 + below(3); pieces > 0; --pieces)
                made += pick(nasty);
        }
        while (once_in(3))
            mutate(made);
        return made;
    }

    // Some elements changed, doubled, taken out or cut off.
    template <class Sequence>
    void mutate(Sequence& sequence) {
        using Element = typename Sequence::value_type;
        if (sequence.empty()) return;
        const std::size_t at = below(sequence.size());
        const auto place = sequence.begin() + static_cast<std::ptrdiff_t>(at);
        const auto end =
            place + static_cast<std::ptrdiff_t>(1 + below(std::min<std::size_t>(sequence.size() - at, 16)));
        const Sequence part(place, end);
        const std::size_t bit = below(sizeof(Element) > 1 ? 16 : 8);
        const std::size_t kind = below(6);
        if (kind == 0) *place = static_cast<Element>(static_cast<unsigned>(*place) ^ 1U << bit);
        if (kind == 1) *place = static_cast<Element>(word() & 0xFFFF);
        if (kind == 2) std::fill(place, end, static_cast<Element>(once_in(2) ? 0xFFFF : 0));
        if (kind == 3) sequence.insert(end, part.begin(), part.end());
        if (kind == 4) sequence.erase(place, end);
        if (kind == 5) sequence.erase(place, sequence.end());
    }

    Bytes bytes(std::size_t size) {
        Bytes made(size);
        for (std::byte& each : made)
            each = static_cast<std::byte>(word());
        return made;
    }

private:
    std::uint64_t state_;
};

// The rounds of a test: QORVENIX_SEED is another seed, QORVENIX_ROUNDS so many times the usual number of rounds.
template <class Round>
void Run(const char* name, std::uint64_t usual, Round&& run_round) {
    const std::uint64_t seed = Variable("QORVENIX_SEED", 20080401);
    const std::uint64_t rounds = usual * Variable("QORVENIX_ROUNDS", 1);
    std::printf("%s: %lu rounds, QORVENIX_SEED=%lu\n", name, static_cast<unsigned long>(rounds),
                static_cast<unsigned long>(seed));
    Source source(seed);
    for (std::uint64_t round = 0; round < rounds; ++round) {
        CAPTURE(seed);
        CAPTURE(round);
        run_round(source, round);
    }
}

}  // namespace hostile
