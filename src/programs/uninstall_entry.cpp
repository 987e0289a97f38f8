#include "programs/uninstall_entry.h"

#include "programs/modReg.h"
#include "win/folders.h"
#include "win/handle.h"
#include "win/system_text.h"
#include "win/text.h"

namespace programs {
namespace {

constexpr DWORD kTextBytes = 512;

// The values of one key. None is read before it is asked for.
class Values {
public:
    explicit Values(HKEY key) : key_(key) {}

    std::optional<std::wstring> text(const wchar_t* name) const {
        wchar_t buffer[kTextBytes / sizeof(wchar_t)];
        DWORD bytes = kTextBytes;
        if (!read(name, buffer, &bytes)) return {};
        return std::wstring(RegistryText(buffer, bytes));
    }

    std::optional<std::uint32_t> number(const wchar_t* name) const {
        std::uint32_t value = 0;
        DWORD bytes = sizeof value;
        if (!read(name, &value, &bytes)) return {};
        return value;
    }

private:
    bool read(const wchar_t* name, void* buffer, DWORD* bytes) const {
        DWORD type = REG_NONE;
        return RegQueryValueExW(key_, name, nullptr, &type, static_cast<BYTE*>(buffer), bytes) == ERROR_SUCCESS;
    }

    HKEY key_;
};

bool IsUpdate(const UninstallEntry& entry) {
    return win::Contains(entry.publisher, L"Microsoft") &&
           (entry.key_name.starts_with(L"KB") || win::Contains(win::LowerCase(entry.display_name), L"(kb"));
}

}  // namespace

std::optional<UninstallEntry> ReadUninstallEntry(HKEY root, const std::wstring& parent_path,
                                                 const std::wstring& key_name, const ScanOptions& options) {
    win::RegKey key;
    if (RegOpenKeyExW(root, (parent_path + key_name).c_str(), 0, KEY_QUERY_VALUE, key.put()) != ERROR_SUCCESS) {
        return {};
    }
    const Values values(key.get());
    if (!options.show_system_components && values.number(L"SystemComponent").value_or(0) != 0) return {};

    UninstallEntry entry;
    entry.key_name = key_name;
    entry.uninstall_command = values.text(L"UninstallString").value_or(std::wstring());
    if (entry.uninstall_command.empty()) return {};
    entry.display_name = values.text(L"DisplayName").value_or(std::wstring());
    entry.publisher = values.text(L"Publisher").value_or(std::wstring());
    entry.is_update = IsUpdate(entry);
    entry.estimated_size = values.number(L"EstimatedSize");
    entry.install_date = values.text(L"InstallDate").value_or(std::wstring());
    entry.install_location = values.text(L"InstallLocation");
    if (options.show_icons) entry.display_icon = values.text(L"DisplayIcon");
    return entry;
}

std::wstring IconPath(const UninstallEntry& entry, startup::FileProbe& probe) {
    if (!entry.display_icon) {
        const std::wstring program = startup::ResolveCommandPath(entry.uninstall_command, probe);
        const bool installer = win::LowerCase(program).starts_with(L"msiexec");
        return installer ? win::SystemDirectory() + L"\\MsiExec.exe" : program;
    }
    std::wstring path = entry.display_icon->substr(0, entry.display_icon->find(L','));
    if (!path.starts_with(L"\"")) return path;
    return path.size() < 2 ? std::wstring() : path.substr(1, path.size() - 2);
}

}  // namespace programs
