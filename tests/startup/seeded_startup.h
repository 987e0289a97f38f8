// The startup list on registry roots and startup folders of a test's own.
#pragma once

#include "startup/startup_actions.h"
#include "startup/startup_scan.h"

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
        user_folders.set_text({}, L"Startup", user_folder.path());
        machine_folders.set_text({}, L"Common Startup", common_folder.path());
    }

    void run() { startup::ScanStartup(list.list, host); }

    static constexpr wchar_t kShellFolders[] =
        L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";

    win::ComApartment apartment;
    TestFolder user_folder{L"QorvenixStartup"};
    TestFolder common_folder{L"QorvenixCommon"};
    TestFolder programs{L"QorvenixPrograms"};
    TestKey machine{HKEY_CURRENT_USER, L"Software\\QorvenixTest\\machine"};
    TestKey user{HKEY_CURRENT_USER, L"Software\\QorvenixTest\\user"};
    TestKey user_folders{HKEY_CURRENT_USER, user.path() + L"\\" + kShellFolders};
    TestKey machine_folders{HKEY_CURRENT_USER, machine.path() + L"\\" + kShellFolders};
    TestKey machine_run{HKEY_CURRENT_USER, machine.path() + L"\\" + startup::kRunKey};
    TestKey machine_once{HKEY_CURRENT_USER, machine.path() + L"\\" + startup::kRunOnceKey};
    TestKey user_run{HKEY_CURRENT_USER, user.path() + L"\\" + startup::kRunKey};
    TestKey user_once{HKEY_CURRENT_USER, user.path() + L"\\" + startup::kRunOnceKey};
    TestList list{startup::kStartupColumns};
    TestHost host;

private:
    RootOverride machine_override_{HKEY_LOCAL_MACHINE, machine.get()};
    RootOverride user_override_{HKEY_CURRENT_USER, user.get()};
};

inline void MakeLink(const std::wstring& link_path, const std::wstring& target) {
    win::ComPtr<IShellLinkW> link;
    REQUIRE(
        SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, link.put_void())));
    link->SetPath(target.c_str());
    link->SetArguments(L"/a \"b c\"");
    link->SetIconLocation(L"%windir%\\regedit.exe", 0);
    REQUIRE(SUCCEEDED(link.as<IPersistFile>(IID_IPersistFile)->Save(link_path.c_str(), TRUE)));
}
