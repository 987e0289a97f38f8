#include "programs/current_user.h"
#include "programs/file_icon.h"
#include "programs/uninstall_scan.h"
#include "startup/path.h"
#include "win/process.h"
#include "win/system_library.h"
#include "win/text.h"

#include "support/show.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "support/throw_away.h"

using programs::Column;

namespace {

const std::wstring kMsiExec = win::SystemDirectory() + L"\\msiexec.exe";
constexpr wchar_t kProductCode[] = L"{5D6C0E1A-7B1B-4F0B-9E57-2B6F3C1D0A11}";

// The folder of this program, where the packages lie too.
std::wstring OwnFolder() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return startup::ParentFolder(path);
}

void RunToItsEnd(const std::wstring& program, const std::wstring& command_line) {
    constexpr DWORD kPatience = 60000;
    const win::StartedProcess started = win::StartProcess(program, command_line, win::WindowStyle::Normal);
    REQUIRE(started.process);
    REQUIRE(WaitForSingleObject(started.process.get(), kPatience) == WAIT_OBJECT_0);
}

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
    const auto row_of = [&](const wchar_t* key) {
        programs::ScanUninstallKeys({list.list, updates.list, icons.get()}, options, programs::CurrentUserSid(), host);
        const int row = list.list.find(Column::RegistryKey, key);
        return row < 0 ? std::vector<std::wstring>() : list.rows()[static_cast<std::size_t>(row)];
    };

    SUBCASE("NSIS") {
        const std::wstring setup = OwnFolder() + L"\\sample_nsis.exe";
        CHECK(row_of(L"SampleNotes").empty());
        RunToItsEnd(setup, L"\"" + setup + L"\" /S");
        const auto row = row_of(L"SampleNotes");
        REQUIRE(!row.empty());
        const std::wstring folder = row[Column::InstallFolder];
        const std::wstring uninstaller = folder + L"\\uninstall.exe";
        REQUIRE(win::IsFile(uninstaller));
        CHECK(row == std::vector<std::wstring>{L"小さなメモ帳", L"見本工房", L"1.50MB", L"20100401", folder,
                                               L"\"" + uninstaller + L"\" /S _?=" + folder, L"SampleNotes",
                                               L"00001.50"});
        CHECK(ImageList_GetImageCount(icons.get()) == list.list.count());
        RunToItsEnd(uninstaller, row[Column::UninstallCommand]);
        CHECK(row_of(L"SampleNotes").empty());
    }
    SUBCASE("Windows Installer") {
        const std::wstring package = L"\"" + OwnFolder() + L"\\sample.msi\"";
        CHECK(row_of(kProductCode).empty());
        RunToItsEnd(kMsiExec, L"msiexec.exe /i " + package + L" /qn");
        auto row = row_of(kProductCode);
        REQUIRE(!row.empty());
        // Wine writes no size; Windows the real one.
        CHECK(win::EndsWith(row[Column::Size], L"MB"));
        CHECK(row[Column::SizeKey] == programs::SizeSortKey(row[Column::Size]));
        row.erase(row.begin() + Column::SizeKey);
        row.erase(row.begin() + Column::Size);
        const std::wstring command = row[Column::UninstallCommand - 1];
        CHECK(row == std::vector<std::wstring>{L"Sample Dictionary", L"Sample Works", Today(),
                                               L"C:\\Program Files\\SampleDictionary\\", command, kProductCode});
        CHECK((command == L"MsiExec.exe /I" + std::wstring(kProductCode) ||
               command == L"MsiExec.exe /X" + std::wstring(kProductCode)));
        CHECK(ImageList_GetImageCount(icons.get()) == list.list.count());
        RunToItsEnd(kMsiExec, L"msiexec.exe /x " + std::wstring(kProductCode) + L" /qn");
        CHECK(row_of(kProductCode).empty());
    }
}
