// Registry names with a NUL inside and unterminated texts: the kernel takes them, the usual functions cannot make them.
#pragma once

#include "win/system_library.h"

#include <winternl.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

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

// Any type and any bytes as they are: Wine's own RegSetValueExW ends an unterminated string.
inline bool SetValue(HKEY key, std::wstring name, DWORD type, std::span<const std::byte> bytes) {
    using Set = LONG(WINAPI*)(HANDLE, const UNICODE_STRING*, ULONG, ULONG, const void*, ULONG);
    static const auto set = Find<Set>("NtSetValueKey");
    const UNICODE_STRING native_name = Name(name);
    return set && set(key, &native_name, 0, type, bytes.data(), static_cast<ULONG>(bytes.size())) == 0;
}

inline bool DeleteValue(HKEY key, std::wstring name) {
    using Delete = LONG(WINAPI*)(HANDLE, const UNICODE_STRING*);
    static const auto delete_value = Find<Delete>("NtDeleteValueKey");
    const UNICODE_STRING native_name = Name(name);
    return delete_value && delete_value(key, &native_name) == 0;
}

inline bool SetText(HKEY key, std::wstring name, const std::wstring& text) {
    return SetValue(key, std::move(name), REG_SZ,
                    std::as_bytes(std::span<const wchar_t>(text.c_str(), text.size() + 1)));
}

// A subkey, deleted at the end.
class Key {
public:
    Key(HKEY parent, std::wstring name) {
        using Create = LONG(WINAPI*)(HANDLE*, ACCESS_MASK, const OBJECT_ATTRIBUTES*, ULONG, void*, ULONG, ULONG*);
        UNICODE_STRING native_name = Name(name);
        OBJECT_ATTRIBUTES place = {};
        place.Length = sizeof place;
        place.RootDirectory = parent;
        place.ObjectName = &native_name;
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
