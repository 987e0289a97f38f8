// A registry key of a test's own: made empty, deleted with all its subkeys at the end.
#pragma once

#include "win/handle.h"

#include <cstddef>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

// Asked before a key that is not the tests' own is made empty; the tests' main function puts REQUIRE_THROW_AWAY here.
inline void (*before_foreign_key)() = nullptr;

class TestKey {
public:
    TestKey(HKEY root, std::wstring path) : root_(root), path_(std::move(path)) {
        const bool own = root_ == HKEY_CURRENT_USER && path_.starts_with(L"Software\\Qorvenix");
        if (!own && before_foreign_key) before_foreign_key();
        SHDeleteKeyW(root_, path_.c_str());
        RegCreateKeyExW(root_, path_.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key_.put(), nullptr);
    }
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;
    ~TestKey() {
        key_.reset();
        SHDeleteKeyW(root_, path_.c_str());
    }

    HKEY get() const { return key_.get(); }
    const std::wstring& path() const { return path_; }

    // An empty `subkey` is the key itself.
    void set_bytes(std::wstring_view subkey, std::wstring_view name, DWORD type,
                   std::span<const std::byte> bytes) const {
        const win::RegKey target = open(subkey);
        RegSetValueExW(target.get(), std::wstring(name).c_str(), 0, type, reinterpret_cast<const BYTE*>(bytes.data()),
                       static_cast<DWORD>(bytes.size()));
    }
    // With its terminator.
    void set_text(std::wstring_view subkey, std::wstring_view name, std::wstring_view text, DWORD type = REG_SZ) const {
        const std::wstring terminated(text);
        set_bytes(subkey, name, type,
                  std::as_bytes(std::span<const wchar_t>(terminated.c_str(), terminated.size() + 1)));
    }
    void set_number(std::wstring_view subkey, std::wstring_view name, DWORD number) const {
        set_bytes(subkey, name, REG_DWORD, std::as_bytes(std::span<const DWORD, 1>(&number, 1)));
    }
    void make(std::wstring_view subkey) const { open(subkey); }

private:
    win::RegKey open(std::wstring_view subkey) const {
        win::RegKey key;
        RegCreateKeyExW(key_.get(), std::wstring(subkey).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.put(),
                        nullptr);
        return key;
    }

    HKEY root_;
    std::wstring path_;
    win::RegKey key_;
};

// Puts a test's key in the place of a registry root, for this process alone: what is read and deleted below the root
// is then the test's own.
class RootOverride {
public:
    RootOverride(HKEY root, HKEY instead) : root_(root) { RegOverridePredefKey(root_, instead); }
    RootOverride(const RootOverride&) = delete;
    RootOverride& operator=(const RootOverride&) = delete;
    ~RootOverride() { RegOverridePredefKey(root_, nullptr); }

private:
    HKEY root_;
};

inline bool KeyExists(HKEY root, const std::wstring& path) {
    win::RegKey key;
    return RegOpenKeyExW(root, path.c_str(), 0, KEY_QUERY_VALUE, key.put()) == ERROR_SUCCESS;
}
