// Registry names with a NUL inside: the kernel takes them, Windows' own functions cannot make them.
#pragma once

#include "win/system_library.h"

#include <winternl.h>

#include <string>
#include <string_view>

namespace native {

template <class Function>
Function Find(const char* name) {
    return win::FindFunction<Function>(GetModuleHandleW(L"ntdll.dll"), name);
}

// A view of `text`, which must outlive it.
inline UNICODE_STRING Name(std::wstring& text) {
    const auto bytes = static_cast<USHORT>(text.size() * sizeof(wchar_t));
    return {bytes, bytes, text.data()};
}

inline bool SetText(HKEY key, std::wstring name, const std::wstring& text) {
    using Set = LONG(WINAPI*)(HANDLE, const UNICODE_STRING*, ULONG, ULONG, const void*, ULONG);
    const UNICODE_STRING native_name = Name(name);
    const auto set = Find<Set>("NtSetValueKey");
    const auto bytes = static_cast<ULONG>((text.size() + 1) * sizeof(wchar_t));
    return set && set(key, &native_name, 0, REG_SZ, text.c_str(), bytes) == 0;
}

// A subkey, deleted at the end.
class Key {
public:
    Key(HKEY parent, std::wstring name) {
        using Create = LONG(WINAPI*)(HANDLE*, ACCESS_MASK, const OBJECT_ATTRIBUTES*, ULONG, void*, ULONG, ULONG*);
        UNICODE_STRING native_name = Name(name);
        const OBJECT_ATTRIBUTES place = {sizeof place, parent, &native_name, 0, nullptr, nullptr};
        const auto create = Find<Create>("NtCreateKey");
        if (create) create(&key_, KEY_ALL_ACCESS, &place, 0, nullptr, 0, nullptr);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        using Delete = LONG(WINAPI*)(HANDLE);
        if (key_) Find<Delete>("NtDeleteKey")(key_);
        if (key_) CloseHandle(key_);
    }

    HKEY get() const { return static_cast<HKEY>(key_); }

private:
    HANDLE key_ = nullptr;
};

}  // namespace native
