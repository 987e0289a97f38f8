// The uninstall scan on registry roots of a test's own, filling two real lists.
#pragma once

#include "programs/program_actions.h"
#include "programs/uninstall_scan.h"
#include "win/file_icon.h"

#include "support/show.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "support/test_list.h"
#include "win/edition.h"

class SeededScan {
public:
    static constexpr wchar_t kSid[] = L"S-1-5-21-1-2-3-1000";
    static constexpr wchar_t kUninstall[] = L"\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
    static constexpr wchar_t kUninstall32[] = L"\\Software\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall";

    void run() { programs::ScanUninstallKeys({programs.list, updates.list, icons.get()}, options, sid, host); }

    // The row of that name; a row without a name when there is none.
    programs::ProgramRow row(const std::wstring& name) const {
        const int index = programs.list.find(programs::ProgramColumn::Name, name);
        return programs::ProgramAt(programs.list, index).value_or(programs::ProgramRow());
    }

    TestKey machine_root{HKEY_CURRENT_USER, L"Software\\QorvenixTest\\machine"};
    TestKey users_root{HKEY_CURRENT_USER, L"Software\\QorvenixTest\\users"};
    TestKey machine{HKEY_CURRENT_USER, machine_root.path() + kUninstall};
    // For a 32-bit program Wine takes such a key, wherever it lies, for the one without the node.
    TestKey machine32{HKEY_CURRENT_USER, machine_root.path() + (win::kIs64Bit ? kUninstall32 : L"\\out of sight")};
    TestKey user{HKEY_CURRENT_USER, users_root.path() + L"\\" + kSid + kUninstall};

    TestList programs{programs::kProgramColumns};
    TestList updates{programs::kProgramColumns};
    win::ImageList icons = win::CreateSmallIconList();
    programs::ScanOptions options;
    std::wstring sid = kSid;
    TestHost host;

private:
    RootOverride machine_override_{HKEY_LOCAL_MACHINE, machine_root.get()};
    RootOverride users_override_{HKEY_USERS, users_root.get()};
};
