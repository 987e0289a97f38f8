// What a process holds. GetGuiResources and GetProcessHandleCount always answer 0 under Wine, so the figures come
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

template <class Function>
Function Native(const char* name) {
    return win::FindFunction<Function>(GetModuleHandleW(L"ntdll.dll"), name);
}

inline long Handles(DWORD process) {
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
    const auto query = Native<Query>("NtQuerySystemInformation");
    std::vector<std::byte> buffer(1 << 20);
    if (!query || query(kSystemHandleInformation, buffer.data(), static_cast<ULONG>(buffer.size()), nullptr) != 0) {
        return -1;
    }
    const ULONG count = *reinterpret_cast<const ULONG*>(buffer.data());
    const auto* entries = reinterpret_cast<const Entry*>(buffer.data() + alignof(Entry));
    long own = 0;
    for (ULONG index = 0; index < count; ++index)
        own += entries[index].process == process;
    return own;
}

// A number, or an address, in a process.
template <class Number>
Number At(HANDLE process, ULONG_PTR address) {
    Number value = 0;
    ReadProcessMemory(process, reinterpret_cast<const void*>(address), &value, sizeof value, nullptr);
    return value;
}

// The address of a thread's block.
inline ULONG_PTR ThreadBlock(HANDLE thread) {
    struct Record {  // THREAD_BASIC_INFORMATION
        LONG status;
        ULONG_PTR block;
        ULONG_PTR other[3];
        LONG priorities[2];
    };
    using Query = LONG(WINAPI*)(HANDLE, ULONG, void*, ULONG, ULONG*);
    const auto query = Native<Query>("NtQueryInformationThread");
    Record record = {};
    return query && query(thread, 0, &record, sizeof record, nullptr) == 0 ? record.block : 0;
}

// From the process's table of GDI objects: 0x94 of the process environment block or 0xF8 of the 64-bit one, which the
// 64-bit thread block leads to. A 32-bit process of a 64-bit prefix has both.
inline long GdiObjects(HANDLE process, HANDLE thread) {
    struct Entry {
        std::uint64_t object;
        std::uint32_t owner;
        std::uint16_t unique;
        std::uint8_t type;
        std::uint8_t flags;
        std::uint64_t user;
    };
    constexpr int kTableLength = 0x4000;
    const ULONG_PTR block = ThreadBlock(thread);
    const ULONG_PTR wide = sizeof(void*) == 8 ? block : At<DWORD>(process, block + 0xF70);
    const auto table = wide ? At<ULONG_PTR>(process, At<ULONG_PTR>(process, wide + 0x60) + 0xF8)
                            : At<DWORD>(process, At<DWORD>(process, block + 0x30) + 0x94);
    std::vector<Entry> entries(kTableLength);
    if (!ReadProcessMemory(process, reinterpret_cast<const void*>(table), entries.data(), kTableLength * sizeof(Entry),
                           nullptr)) {
        return -1;
    }
    long used = 0;
    for (const Entry& entry : entries)
        used += entry.type != 0;
    return used;
}

// The private bytes; under Wine those that are in use.
inline long PrivateKilobytes(HANDLE process) {
    struct Record {  // VM_COUNTERS
        SIZE_T other[9];
        SIZE_T page_file;
        SIZE_T page_file_peak;
    };
    constexpr ULONG kProcessVmCounters = 3;
    using Query = LONG(WINAPI*)(HANDLE, ULONG, void*, ULONG, ULONG*);
    const auto query = Native<Query>("NtQueryInformationProcess");
    Record record = {};
    if (!query || query(process, kProcessVmCounters, &record, sizeof record, nullptr) != 0) return -1;
    return static_cast<long>(record.page_file / 1024);
}

}  // namespace counters

// `thread` is any thread of the process.
inline Counters Count(HANDLE process, DWORD process_id, HANDLE thread) {
    return {counters::Handles(process_id), counters::GdiObjects(process, thread), counters::PrivateKilobytes(process)};
}

inline Counters CountOwn() { return Count(GetCurrentProcess(), GetCurrentProcessId(), GetCurrentThread()); }
