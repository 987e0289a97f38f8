// The uninstall scan on registry roots of a test's own, filling two real lists.
#pragma once

#include "programs/uninstall_scan.h"
#include "win/file_icon.h"

#include "support/root_override.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "support/test_list.h"
#include "win/edition.h"

#include <vector>

class SeededScan {
public:
    static constexpr wchar_t kSid[] = L"S-1-5-21-1-2-3-1000";
    static constexpr wchar_t kUninstall[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
    static constexpr wchar_t kUninstall32[] = L"Software\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

    void run() { programs::ScanUninstallKeys({programs.list, updates.list, icons.get()}, options, sid, host); }

    TestKey sandbox{HKEY_CURRENT_USER, L"Software\\QorvenixTest\\scan"};
    TestKey machine{HKEY_CURRENT_USER, sandbox.path() + L"\\machine\\" + kUninstall};
    // For a 32-bit program Wine takes such a key, wherever it lies, for the one without the node.
    TestKey machine32{HKEY_CURRENT_USER,
                      sandbox.path() + (win::kIs64Bit ? L"\\machine\\" : L"\\out of sight\\") + kUninstall32};
    TestKey user{HKEY_CURRENT_USER, sandbox.path() + L"\\users\\" + kSid + L"\\" + kUninstall};

    TestList programs{programs::kProgramColumns};
    TestList updates{programs::kProgramColumns};
    win::ImageList icons = win::CreateSmallIconList();
    programs::ScanOptions options;
    std::wstring sid = kSid;
    TestHost host;

private:
    static win::RegKey Open(const std::wstring& path) {
        win::RegKey key;
        RegOpenKeyExW(HKEY_CURRENT_USER, path.c_str(), 0, KEY_ALL_ACCESS, key.put());
        return key;
    }

    win::RegKey machine_root_ = Open(sandbox.path() + L"\\machine");
    win::RegKey users_root_ = Open(sandbox.path() + L"\\users");
    RootOverride machine_override_{HKEY_LOCAL_MACHINE, machine_root_.get()};
    RootOverride users_override_{HKEY_USERS, users_root_.get()};
};
