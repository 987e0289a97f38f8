// Programs that real installers brought are removed from the list by their own uninstallers.
#include "programs/current_user.h"
#include "programs/program_actions.h"
#include "programs/uninstall_scan.h"
#include "support/sample_packages.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "support/throw_away.h"
#include "win/system_library.h"
#include "win/text.h"

using namespace programs;
using packages::kMsiKey;
using packages::kNsisKey;

namespace {

const std::wstring kUninstall = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

std::wstring StoredCommand(const std::wstring& key) {
    wchar_t command[512] = {};
    DWORD size = sizeof command;
    SHGetValueW(HKEY_LOCAL_MACHINE, (kUninstall + key).c_str(), L"UninstallString", nullptr, command, &size);
    return command;
}

void StoreCommand(const std::wstring& key, const std::wstring& command) {
    SHSetValueW(HKEY_LOCAL_MACHINE, (kUninstall + key).c_str(), L"UninstallString", REG_SZ, command.c_str(),
                static_cast<DWORD>((command.size() + 1) * sizeof(wchar_t)));
}

// The lists as the window fills and acts on them.
struct Lists {
    // Whether `key` is listed after a scan; its row is then the selected one.
    bool has(const std::wstring& key) {
        ScanUninstallKeys({programs.list, updates.list, nullptr}, {}, CurrentUserSid(), host);
        const int row = programs.list.find(Column::RegistryKey, key);
        if (row >= 0) programs.list.select(row);
        return row >= 0;
    }
    bool uninstall() {
        host.pumps = 0;
        return Uninstall(*SelectedProgram(programs.list), host);
    }

    TestHost host;
    TestList programs{kColumns};
    TestList updates{kColumns};
};

}  // namespace

TEST_CASE("A program is gone from the list after its own uninstaller has run") {
    REQUIRE_THROW_AWAY();
    Lists lists;

    SUBCASE("NSIS, told to stay one process") {
        packages::InstallNsis();
        REQUIRE(win::Contains(StoredCommand(kNsisKey), L"_?="));
        REQUIRE(lists.has(kNsisKey));
        const std::wstring folder = SelectedProgram(lists.programs.list)->install_folder;
        REQUIRE(win::IsFile(folder + L"\\sample.nsi"));
        CHECK(lists.uninstall());
        CHECK(lists.host.pumps > 0);
        CHECK_FALSE(lists.has(kNsisKey));
        CHECK_FALSE(win::IsFile(folder + L"\\sample.nsi"));
    }
    SUBCASE("NSIS, which hands over to a copy of itself and ends: gone at a later refresh") {
        packages::InstallNsis();
        const std::wstring command = StoredCommand(kNsisKey);
        StoreCommand(kNsisKey, command.substr(0, command.find(L" _?=")));
        REQUIRE(lists.has(kNsisKey));
        CHECK(lists.uninstall());
        for (int turn = 0; turn < 100 && lists.has(kNsisKey); ++turn)
            Sleep(100);
        CHECK_FALSE(lists.has(kNsisKey));
    }
    SUBCASE("Windows Installer") {
        packages::InstallMsi();
        // The command that Windows stores asks what to do with the program; nobody would answer here.
        REQUIRE(win::Contains(StoredCommand(kMsiKey), L"MsiExec.exe /"));
        StoreCommand(kMsiKey, L"MsiExec.exe /X" + kMsiKey + L" /qn");
        REQUIRE(lists.has(kMsiKey));
        CHECK(lists.uninstall());
        CHECK(lists.host.pumps > 0);
        CHECK_FALSE(lists.has(kMsiKey));
    }
}
