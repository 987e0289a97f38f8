#include "programs/program_actions.h"

#include "programs/uninstall_command.h"
#include "programs/uninstall_scan.h"

namespace programs {
namespace {

std::wstring ForcedUninstallQuestion(const std::wstring& name) {
    return L"「" + name +
           L"」を強制アンインストールしますか？\r\n"
           L"※注意：本機能はレジストリの削除のみを行い、\r\n"
           L"　　　　一覧からプログラム名を削除する機能です";
}

}  // namespace

std::optional<ProgramRow> SelectedProgram(const ui::ListView& list) {
    const int row = list.selected();
    if (row < 0) return {};
    const ProgramTag tag = ProgramTag::of(list.tag(row));
    return ProgramRow{
        .name = list.cell(row, ProgramColumn::Name),
        .install_folder = list.cell(row, ProgramColumn::InstallFolder),
        .empty_install_folder = tag.empty_install_folder,
        .uninstall_command = list.cell(row, ProgramColumn::UninstallCommand),
        .place = tag.place,
        .key_name = list.cell(row, ProgramColumn::RegistryKey),
    };
}

bool Uninstall(const ProgramRow& row, ui::Host& host) {
    const win::StartedProcess started = StartUninstallCommand(row.uninstall_command, host.window());
    if (!started.process) return false;
    WaitForProcessEnd(started.process.get(), host);
    return true;
}

bool ForcedUninstall(const ProgramRow& row, std::wstring_view user_sid, ui::Host& host) {
    // An empty name would delete the Uninstall key itself.
    if (row.key_name.empty()) return false;
    if (host.confirm(ForcedUninstallQuestion(row.name)) != ui::Answer::Ok) return false;
    // A user's own entry stays, and so does one of the machine's that has the same name.
    const bool of_user = row.place == UninstallPlace::User;
    if (of_user && OpenUninstallKey(UninstallPlace::Machine, {}, {})) return true;
    const win::RegKey key = OpenUninstallKey(row.place, {}, user_sid);
    if (!key) return false;
    RegDeleteKeyW(key.get(), row.key_name.c_str());
    return true;
}

void OpenInstallFolder(const ProgramRow& row) {
    const std::wstring command = InstallFolderCommand(row);
    if (!command.empty()) win::StartSystemProgram(L"explorer.exe", command, win::WindowStyle::Normal);
}

std::wstring InstallFolderCommand(const ProgramRow& row) {
    constexpr wchar_t kOpeningQuote[] = L"explorer.exe \"";
    if (!row.install_folder.empty()) return kOpeningQuote + row.install_folder + L"\"";
    // An empty folder has always cut the line off behind the quote, and the Explorer then shows its own start folder.
    return row.empty_install_folder ? kOpeningQuote : std::wstring();
}

}  // namespace programs
