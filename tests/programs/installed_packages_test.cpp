#include "programs/current_user.h"
#include "programs/file_icon.h"
#include "programs/uninstall_scan.h"
#include "win/system_library.h"
#include "win/text.h"

#include "support/sample_packages.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "support/throw_away.h"

using programs::Column;

namespace {

std::wstring Today() {
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    wchar_t text[9] = {};
    swprintf(text, 9, L"%04d%02d%02d", now.wYear, now.wMonth, now.wDay);
    return text;
}

}  // namespace

TEST_CASE("what installers bring is in the list until it is uninstalled") {
    REQUIRE_THROW_AWAY();
    TestList list(programs::kColumns);
    TestList updates(programs::kColumns);
    const win::ImageList icons = programs::CreateSmallIconList();
    const programs::ScanOptions options = {true, false};
    TestHost host;
    const auto row_of = [&](const std::wstring& key) {
        programs::ScanUninstallKeys({list.list, updates.list, icons.get()}, options, programs::CurrentUserSid(), host);
        const int row = list.list.find(Column::RegistryKey, key);
        return row < 0 ? std::vector<std::wstring>() : list.rows()[static_cast<std::size_t>(row)];
    };

    SUBCASE("NSIS") {
        CHECK(row_of(packages::kNsisKey).empty());
        packages::InstallNsis();
        const auto row = row_of(packages::kNsisKey);
        REQUIRE(!row.empty());
        const std::wstring folder = row[Column::InstallFolder];
        const std::wstring uninstaller = folder + L"\\uninstall.exe";
        REQUIRE(win::IsFile(uninstaller));
        CHECK(row == std::vector<std::wstring>{L"小さなメモ帳", L"見本工房", L"1.50MB", L"20100401", folder,
                                               L"\"" + uninstaller + L"\" /S _?=" + folder, packages::kNsisKey,
                                               L"00001.50"});
        CHECK(ImageList_GetImageCount(icons.get()) == list.list.count());
        packages::RunToItsEnd(uninstaller, row[Column::UninstallCommand]);
        CHECK(row_of(packages::kNsisKey).empty());
    }
    SUBCASE("Windows Installer") {
        CHECK(row_of(packages::kMsiKey).empty());
        packages::InstallMsi();
        auto row = row_of(packages::kMsiKey);
        REQUIRE(!row.empty());
        // Wine writes no size; Windows the real one.
        CHECK(win::EndsWith(row[Column::Size], L"MB"));
        CHECK(row[Column::SizeKey] == programs::SizeSortKey(row[Column::Size]));
        row.erase(row.begin() + Column::SizeKey);
        row.erase(row.begin() + Column::Size);
        const std::wstring command = row[Column::UninstallCommand - 1];
        CHECK(row == std::vector<std::wstring>{L"Sample Dictionary", L"Sample Works", Today(),
                                               L"C:\\Program Files\\SampleDictionary\\", command, packages::kMsiKey});
        CHECK((command == L"MsiExec.exe /I" + packages::kMsiKey || command == L"MsiExec.exe /X" + packages::kMsiKey));
        CHECK(ImageList_GetImageCount(icons.get()) == list.list.count());
        packages::RunMsiExec(L"/x " + packages::kMsiKey + L" /qn");
        CHECK(row_of(packages::kMsiKey).empty());
    }
}
