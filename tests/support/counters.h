// What this process holds. GetGuiResources and GetProcessHandleCount always answer 0 under Wine, so the figures come
// from where the system itself keeps them.
#pragma once

#include "win/handle.h"
#include "win/system_library.h"

#include <cstddef>
#include <cstdint>
#include <vector>

struct Counters {
    long handles = 0;
    long gdi_objects = 0;
    long private_kilobytes = 0;
};

namespace counters {

inline long Handles() {
    struct Entry {
        DWORD process;
        BYTE type;
        BYTE flags;
        WORD handle;
        void* object;
        DWORD access;
    };
    constexpr ULONG kSystemHandleInformation = 16;
    using Query = LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*);
    const auto query = win::FindFunction<Query>(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation");
    std::vector<std::byte> buffer(1 << 20);
    if (!query || query(kSystemHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), nullptr) != 0) {
        return -1;
    }
    const ULONG count = *reinterpret_cast<const ULONG*>(buffer.data());
    const auto* entries = reinterpret_cast<const Entry*>(buffer.data() + sizeof count);
    long own = 0;
    for (ULONG index = 0; index < count; ++index)
        own += entries[index].process == GetCurrentProcessId();
    return own;
}

// The address of the process's table of GDI objects: 0x94 of the process environment block, or, for a 32-bit process
// of a 64-bit prefix, 0xF8 of the 64-bit block, which the 64-bit thread block leads to.
inline DWORD GdiTable() {
    const auto at = [](DWORD address) { return *reinterpret_cast<const DWORD*>(address); };
    DWORD thread = 0;
    __asm__("movl %%fs:0x18, %0" : "=r"(thread));
    const DWORD wide_thread = at(thread + 0xF70);
    return wide_thread ? at(at(wide_thread + 0x60) + 0xF8) : at(at(thread + 0x30) + 0x94);
}

inline long GdiObjects() {
    struct Entry {
        std::uint64_t object;
        std::uint32_t owner;
        std::uint16_t unique;
        std::uint8_t type;
        std::uint8_t flags;
        std::uint64_t user;
    };
    constexpr int kTableLength = 0x4000;
    const auto* table = reinterpret_cast<const Entry*>(GdiTable());
    long used = 0;
    for (int index = 0; table && index < kTableLength; ++index)
        used += table[index].type != 0;
    return used;
}

inline long PrivateKilobytes() {
    struct Record {  // PROCESS_MEMORY_COUNTERS
        DWORD size;
        DWORD faults;
        SIZE_T other[6];
        SIZE_T page_file;  // the private bytes; under Wine those that are in use
        SIZE_T page_file_peak;
    };
    using Query = BOOL(WINAPI*)(HANDLE, Record*, DWORD);
    const win::Module library = win::LoadSystemLibrary(L"psapi.dll");
    const auto query = win::FindFunction<Query>(library.get(), "GetProcessMemoryInfo");
    Record record = {};
    record.size = sizeof record;
    if (!query || !query(GetCurrentProcess(), &record, sizeof record)) return -1;
    return static_cast<long>(record.page_file / 1024);
}

}  // namespace counters

inline Counters CountOwn() { return {counters::Handles(), counters::GdiObjects(), counters::PrivateKilobytes()}; }
