// Whether work that is done again and again holds on to anything. GetGuiResources and GetProcessHandleCount always
// answer 0 under Wine, so the figures come from where the system itself keeps them.
#pragma once

#include "support/throw_away.h"
#include "win/edition.h"
#include "win/handle.h"
#include "win/system_library.h"

#include <psapi.h>

#include <doctest/doctest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <utility>
#include <vector>

namespace leaks {

inline long Handles() {
    struct Entry {
        DWORD process, handle;
        void* object;
        DWORD access;
    };
    constexpr ULONG kSystemHandleInformation = 16;
    const auto query = win::FindFunction<LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*)>(GetModuleHandleW(L"ntdll.dll"),
                                                                                     "NtQuerySystemInformation");
    std::vector<std::byte> buffer(1 << 20);
    REQUIRE(query(kSystemHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), nullptr) == 0);
    const ULONG count = *reinterpret_cast<const ULONG*>(buffer.data());
    const auto* entries = reinterpret_cast<const Entry*>(buffer.data() + alignof(Entry));
    return static_cast<long>(std::count_if(entries, entries + count,
                                           [](const Entry& entry) { return entry.process == GetCurrentProcessId(); }));
}

// From the process's table of GDI objects, 0xF8 of the 64-bit environment block, which the 64-bit thread block leads
// to. A 32-bit process of a 64-bit prefix has these, too.
inline long GdiObjects() {
    struct Entry {
        std::uint8_t before[14], type, behind[9];
    };
    constexpr int kTableLength = 0x4000;
    const auto at = [](const std::byte* block, int offset) {
        const std::byte* address = nullptr;
        std::memcpy(&address, block + offset, sizeof address);
        return address;
    };
    const auto* block = reinterpret_cast<const std::byte*>(NtCurrentTeb());
    if (!win::kIs64Bit) block = at(block, 0xF70);
    const auto* const entries = reinterpret_cast<const Entry*>(at(at(block, 0x60), 0xF8));
    return static_cast<long>(
        std::count_if(entries, entries + kTableLength, [](const Entry& entry) { return entry.type != 0; }));
}

// The windows, menus, icons and hooks of all programs. Wine's server keeps one table of their handles, takes the free
// places first, the latest freed before the others, and then adds to the end. So menus are made until their handles
// follow each other without a gap: then the table is full, and its length is the place of the last one. Freed in the
// order of their places, they come back in the opposite one and are not taken for the end.
inline long UserObjects() {
    constexpr int kWithoutGap = 32;
    std::map<long, win::Menu> menus;
    long last = 0;
    for (int run = 0; run < kWithoutGap;) {
        win::Menu menu(CreateMenu());
        const long place = static_cast<long>(LOWORD(reinterpret_cast<DWORD_PTR>(menu.get())) / 2);
        run = place == std::exchange(last, place) + 1 ? run + 1 : 0;
        menus.emplace(place, std::move(menu));
        REQUIRE(menus.size() < 20000);
    }
    const long used = last - static_cast<long>(menus.size());
    while (!menus.empty())
        menus.erase(menus.begin());
    return used;
}

// The private memory that is in use.
inline long Kilobytes() {
    PROCESS_MEMORY_COUNTERS counters = {};
    REQUIRE(GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters));
    return static_cast<long>(counters.PagefileUsage / 1024);
}

}  // namespace leaks

template <class Work>
void CheckHoldsOnToNothing(int warm_up, int rounds, long spare_kilobytes, Work&& work) {
    throw_away::RequireWine();
    for (int round = 0; round < warm_up; ++round)
        work();
    const long handles = leaks::Handles(), gdi = leaks::GdiObjects(), user = leaks::UserObjects();
    const long kilobytes = leaks::Kilobytes();
    REQUIRE((handles > 0 && gdi > 0 && kilobytes > 0));
    for (int round = 0; round < rounds; ++round)
        work();
    CHECK(leaks::Handles() == handles);
    CHECK(leaks::GdiObjects() == gdi);
    CHECK(leaks::UserObjects() == user);
    CHECK(leaks::Kilobytes() <= kilobytes + spare_kilobytes);
}
