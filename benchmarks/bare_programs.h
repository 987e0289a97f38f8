// What the scan asks of the registry and says to its two lists, as a bare loop.
#pragma once

#include "bare_list.h"
#include "programs/uninstall_scan.h"
#include "uninstall_entries.h"

#include <string>
#include <vector>

namespace bench {

inline constexpr DWORD kValueBytes = 512;

struct TextValue {
    TextValue(HKEY key, const wchar_t* name) {
        text[0] = L'\0';
        DWORD bytes = kValueBytes;
        DWORD type = 0;
        RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes);
    }
    wchar_t text[kValueBytes / sizeof(wchar_t)];
};

inline std::vector<std::wstring> EntryNames() {
    win::RegKey key;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, kUninstall, 0, KEY_ENUMERATE_SUB_KEYS, key.put());
    std::vector<std::wstring> names;
    for (DWORD index = 0;; ++index) {
        wchar_t name[kValueBytes];
        DWORD length = kValueBytes;
        FILETIME written = {};
        if (RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, &written) != ERROR_SUCCESS) {
            return names;
        }
        names.emplace_back(name, length);
    }
}

// Without lists it only reads. Sizes are texts of the same length.
inline void ScanBare(const ui::ListView* programs, const ui::ListView* updates) {
    using programs::ProgramColumn;
    BareList bare_programs(programs);
    BareList bare_updates(updates);
    for (const std::wstring& name : EntryNames()) {
        win::RegKey key;
        RegOpenKeyExW(HKEY_LOCAL_MACHINE, (kUninstall + name).c_str(), 0, KEY_QUERY_VALUE, key.put());
        const TextValue component(key.get(), L"SystemComponent");
        const TextValue command(key.get(), L"UninstallString");
        const TextValue display_name(key.get(), L"DisplayName");
        const TextValue publisher(key.get(), L"Publisher");
        const TextValue size(key.get(), L"EstimatedSize");
        const TextValue date(key.get(), L"InstallDate");
        const TextValue folder(key.get(), L"InstallLocation");
        BareList& list = name[0] == L'K' ? bare_updates : bare_programs;
        list.add(display_name.text);
        list.set(ProgramColumn::Publisher, publisher.text);
        list.set(ProgramColumn::Size, L"1234.56MB");
        list.set(ProgramColumn::SizeKey, L"01234.56");
        list.set(ProgramColumn::InstallDate, date.text);
        list.set(ProgramColumn::InstallFolder, folder.text);
        list.set(ProgramColumn::UninstallCommand, command.text);
        list.set(ProgramColumn::RegistryKey, name.c_str());
    }
}

}  // namespace bench
