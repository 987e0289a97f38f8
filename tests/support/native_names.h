// Registry names with a NUL inside and unterminated texts: the kernel takes them, the usual functions cannot make them.
#pragma once

#include "win/handle.h"
#include "win/system_library.h"

#include <winternl.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace native {

// Calls a function of ntdll.dll, whose parameters have exactly these types. True when it succeeded.
template <class... Arguments>
bool Call(const char* name, Arguments... arguments) {
    using Function = LONG(WINAPI*)(Arguments...);
    const auto function = win::FindFunction<Function>(GetModuleHandleW(L"ntdll.dll"), name);
    return function && function(arguments...) == 0;
}

// A view of `text`, which must outlive it.
inline UNICODE_STRING Name(std::wstring& text) {
    const auto bytes = static_cast<USHORT>(text.size() * sizeof(wchar_t));
    return {bytes, bytes, text.data()};
}

// Any type and any bytes as they are: Wine's own RegSetValueExW ends an unterminated string.
inline bool SetValue(HKEY key, std::wstring name, DWORD type, std::span<const std::byte> bytes) {
    UNICODE_STRING native_name = Name(name);
    return Call("NtSetValueKey", key, &native_name, ULONG{0}, type, bytes.data(), static_cast<ULONG>(bytes.size()));
}

inline bool DeleteValue(HKEY key, std::wstring name) {
    UNICODE_STRING native_name = Name(name);
    return Call("NtDeleteValueKey", key, &native_name);
}

inline bool SetText(HKEY key, std::wstring name, const std::wstring& text) {
    return SetValue(key, std::move(name), REG_SZ, std::as_bytes(std::span(text.c_str(), text.size() + 1)));
}

// A subkey, deleted at the end.
class Key {
public:
    Key(HKEY parent, std::wstring name) {
        UNICODE_STRING native_name = Name(name);
        OBJECT_ATTRIBUTES place = {};
        place.Length = sizeof place;
        place.RootDirectory = parent;
        place.ObjectName = &native_name;
        Call("NtCreateKey", key_.put(), ACCESS_MASK{KEY_ALL_ACCESS}, &place, ULONG{0}, nullptr, ULONG{0}, nullptr);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (key_) Call("NtDeleteKey", key_.get());
    }

    HKEY get() const { return key_.get(); }

private:
    win::RegKey key_;
};

}  // namespace native
