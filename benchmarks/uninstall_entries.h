// An Uninstall key with entries as installers write them, in the place of the machine's own.
#pragma once

#include "../tests/support/test_key.h"
#include "programs/uninstall_scan.h"
#include "win/text.h"

namespace bench {

inline constexpr wchar_t kUninstall[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

// Every fourth entry is an update.
class UninstallEntries {
public:
    explicit UninstallEntries(int count) : key_(HKEY_CURRENT_USER, std::wstring(kRoot) + L"\\" + kUninstall) {
        for (int number = 0; number < count; ++number) {
            const bool update = number % 4 == 0;
            const std::wstring digits = win::PadZeros(static_cast<unsigned>(number), 12);
            const std::wstring name = update ? L"KB" + digits : L"{8A0C6A00-0000-4000-8000-" + digits + L"}";
            key_.set_text(name, L"DisplayName", L"日本語のプログラム " + win::ToText(number));
            key_.set_text(name, L"Publisher", update ? L"Microsoft Corporation" : L"株式会社プログラム");
            key_.set_text(name, L"UninstallString", L"MsiExec.exe /X" + name);
            key_.set_text(name, L"InstallDate", L"20100401");
            key_.set_text(name, L"InstallLocation", L"C:\\Program Files\\Program " + win::ToText(number));
            key_.set_text(name, L"DisplayIcon", L"C:\\windows\\regedit.exe,0");
            key_.set_number(name, L"EstimatedSize", static_cast<DWORD>(number) * 1000);
        }
        RegOpenKeyExW(HKEY_CURRENT_USER, kRoot, 0, KEY_ALL_ACCESS, root_.put());
    }

    // To be put in the place of HKEY_LOCAL_MACHINE.
    HKEY root() const { return root_.get(); }

private:
    static constexpr wchar_t kRoot[] = L"Software\\QorvenixBench";

    TestKey key_;
    win::RegKey root_;
};

}  // namespace bench
