#include "programs/program_actions.h"

#include "programs/uninstall_command.h"
#include "programs/uninstall_scan.h"
#include "win/folders.h"
#include "win/system_text.h"
#include "win/text.h"

namespace programs {
namespace {

constexpr wchar_t kUninstalling[] = L"アンインストーラの実行中です...";

std::wstring ForcedUninstallQuestion(const std::wstring& name) {
    return L"「" + name +
           L"」を強制アンインストールしますか？\r\n"
           L"※注意：本機能はレジストリの削除のみを行い、\r\n"
           L"　　　　一覧からプログラム名を削除する機能です";
}

constexpr wchar_t kExplorer[] = L"explorer.exe";

// Some installers store the folder in quotes.
std::wstring_view WithoutQuotes(std::wstring_view text) {
    const bool quoted = text.size() >= 2 && text.front() == L'"' && text.back() == L'"';
    return quoted ? text.substr(1, text.size() - 2) : text;
}

// Whether the Explorer would open something else than a folder: it starts the file that it is given.
bool IsNoFolder(std::wstring_view value) {
    const std::wstring path = win::ExpandVariables(std::wstring(WithoutQuotes(value)));
    return win::Contains(path, L"\"") || PathIsURLW(path.c_str()) || win::IsFile(path);
}

}  // namespace

std::optional<ProgramRow> ProgramAt(const ui::ListView& list, int row) {
    if (row < 0) return {};
    const ProgramTag tag = ProgramTag::of(list.item_data(row));
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
    const std::wstring before = host.status_text();
    host.set_status(kUninstalling);
    WaitForProcessEnd(started.process.get(), host);
    // On a tab that writes nothing itself it would stay.
    if (host.status_text() == kUninstalling) host.set_status(before);
    return true;
}

bool ForcedUninstall(const ProgramRow& row, std::wstring_view user_sid, const win::BackupFolder& backup,
                     ui::Host& host) {
    // An empty name would delete the Uninstall key itself.
    if (row.key_name.empty()) return false;
    if (host.confirm(ForcedUninstallQuestion(row.name)) != ui::Answer::Ok) return false;
    // A user's own entry stays, and so does one of the machine's that has the same name.
    const bool of_user = row.place == UninstallPlace::User;
    if (of_user && OpenUninstallKey(UninstallPlace::Machine, {}, {})) return true;
    const win::RegKey key = OpenUninstallKey(row.place, {}, user_sid);
    if (!key) return false;
    const bool kept = backup.keep_key(key.get(), row.key_name, row.name);
    RegDeleteKeyW(key.get(), row.key_name.c_str());
    if (!kept) host.set_status(win::kNothingKept);
    return true;
}

void OpenInstallFolder(const ProgramRow& row) {
    const std::wstring command = InstallFolderCommand(row);
    if (command.empty() || IsNoFolder(row.install_folder)) return;
    win::StartSystemProgram(kExplorer, command, win::WindowStyle::Normal);
}

std::wstring InstallFolderCommand(const ProgramRow& row) {
    std::wstring opening_quote = std::wstring(kExplorer) + L" \"";
    if (!row.install_folder.empty()) return opening_quote.append(WithoutQuotes(row.install_folder)) + L"\"";
    // An empty folder cuts the line off behind the quote: the Explorer shows its own start folder, as users expect.
    return row.empty_install_folder ? opening_quote : std::wstring();
}

}  // namespace programs
