// Programs that real installers bring are listed with what they tell, and removed by their own uninstallers.
#include "programs/current_user.h"
#include "programs/program_actions.h"
#include "programs/uninstall_scan.h"
#include "support/sample_packages.h"
#include "support/show.h"
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

std::wstring Today() {
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    wchar_t text[9] = {};
    swprintf(text, 9, L"%04d%02d%02d", now.wYear, now.wMonth, now.wDay);
    return text;
}

// The lists as the window fills and acts on them.
struct Lists {
    // The cells of `key` after a scan, none if it is not listed; its row is then the selected one.
    std::vector<std::wstring> row_of(const std::wstring& key) {
        ScanUninstallKeys({programs.list, updates.list, nullptr}, {}, CurrentUserSid(), host);
        const int row = programs.list.find(Column::RegistryKey, key);
        if (row < 0) return {};
        programs.list.select(row);
        return programs.rows()[static_cast<std::size_t>(row)];
    }
    bool has(const std::wstring& key) { return !row_of(key).empty(); }
    bool uninstall() {
        host.pumps = 0;
        return Uninstall(*SelectedProgram(programs.list), host);
    }

    TestHost host;
    TestList programs{kColumns};
    TestList updates{kColumns};
};

}  // namespace

TEST_CASE("What installers bring is in the list until its own uninstaller has run") {
    REQUIRE_THROW_AWAY();
    Lists lists;

    SUBCASE("NSIS, told to stay one process") {
        packages::InstallNsis();
        const auto row = lists.row_of(kNsisKey);
        REQUIRE(!row.empty());
        const std::wstring folder = row[Column::InstallFolder];
        CHECK(row == std::vector<std::wstring>{L"小さなメモ帳", L"見本工房", L"1.50MB", L"20100401", folder,
                                               L"\"" + folder + L"\\uninstall.exe\" /S _?=" + folder, kNsisKey,
                                               L"00001.50"});
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
        const std::wstring command = L"MsiExec.exe /X" + kMsiKey + L" /qn";
        StoreCommand(kMsiKey, command);
        auto row = lists.row_of(kMsiKey);
        REQUIRE(!row.empty());
        // Wine writes no size; Windows the real one.
        CHECK(row[Column::SizeKey] == SizeSortKey(row[Column::Size]));
        row.erase(row.begin() + Column::SizeKey);
        row.erase(row.begin() + Column::Size);
        CHECK(row == std::vector<std::wstring>{L"Sample Dictionary", L"Sample Works", Today(),
                                               L"C:\\Program Files\\SampleDictionary\\", command, kMsiKey});
        CHECK(lists.uninstall());
        CHECK(lists.host.pumps > 0);
        CHECK_FALSE(lists.has(kMsiKey));
    }
}
