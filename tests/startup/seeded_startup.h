// The startup scan on registry roots and startup folders of a test's own, filling a real list.
#pragma once

#include "startup/startup_scan.h"

#include "support/root_override.h"
#include "support/show.h"
#include "support/test_folder.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "support/test_list.h"
#include "win/com_ptr.h"
#include "win/edition.h"

class SeededStartup {
public:
    SeededStartup() {
        user_folders.set_text(L"", L"Startup", user_folder.path());
        machine_folders.set_text(L"", L"Common Startup", common_folder.path());
    }

    void run() { startup::ScanStartup(list.list, host); }

    static constexpr wchar_t kShellFolders[] =
        L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

    win::ComApartment apartment;
    TestFolder user_folder{L"QorvenixStartup"};
    TestFolder common_folder{L"QorvenixCommon"};
    TestFolder programs{L"QorvenixPrograms"};
    TestKey sandbox{HKEY_CURRENT_USER, L"Software\\QorvenixTest\\startup"};
    TestKey user_folders{HKEY_CURRENT_USER, sandbox.path() + L"\\user\\" + kShellFolders};
    TestKey machine_folders{HKEY_CURRENT_USER, sandbox.path() + L"\\machine\\" + kShellFolders};
    TestKey machine_run{HKEY_CURRENT_USER, sandbox.path() + L"\\machine\\" + startup::kRunKey};
    TestKey machine_once{HKEY_CURRENT_USER, sandbox.path() + L"\\machine\\" + startup::kRunOnceKey};
    // For a 32-bit program Wine takes such a key, wherever it lies, for the one without the node.
    static constexpr const wchar_t* kMachine32 = win::kIs64Bit ? L"\\machine\\" : L"\\out of sight\\";
    TestKey machine_run32{HKEY_CURRENT_USER, sandbox.path() + kMachine32 + startup::kRunKey32};
    TestKey machine_once32{HKEY_CURRENT_USER, sandbox.path() + kMachine32 + startup::kRunOnceKey32};
    TestKey user_run{HKEY_CURRENT_USER, sandbox.path() + L"\\user\\" + startup::kRunKey};
    TestKey user_once{HKEY_CURRENT_USER, sandbox.path() + L"\\user\\" + startup::kRunOnceKey};
    TestList list{startup::kStartupColumns};
    TestHost host;

private:
    win::RegKey machine_root_ = Open(L"machine");
    win::RegKey user_root_ = Open(L"user");
    RootOverride machine_override_{HKEY_LOCAL_MACHINE, machine_root_.get()};
    RootOverride user_override_{HKEY_CURRENT_USER, user_root_.get()};

    win::RegKey Open(const wchar_t* name) const {
        win::RegKey key;
        RegOpenKeyExW(sandbox.get(), name, 0, KEY_ALL_ACCESS, key.put());
        return key;
    }
};

inline void MakeLink(const std::wstring& link_path, const std::wstring& target) {
    win::ComPtr<IShellLinkW> link;
    REQUIRE(
        SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.put_void())));
    link->SetPath(target.c_str());
    link->SetDescription(L"説明");
    link->SetArguments(L"/a \"b c\"");
    link->SetIconLocation(L"%windir%\\regedit.exe", 0);
    REQUIRE(SUCCEEDED(link.as<IPersistFile>(IID_IPersistFile)->Save(link_path.c_str(), TRUE)));
}
