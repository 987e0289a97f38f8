#include "tools/shell_repairs.h"

#include "win/handle.h"
#include "win/os_version.h"
#include "win/system_text.h"

namespace tools {
namespace {

constexpr wchar_t kRestoreSendTo[] = L"コンテキストメニューの「送る」を復元 (XP/Vista)";
constexpr wchar_t kRemoved[] = L"削除完了";
constexpr wchar_t kRestored[] = L"復元完了";
constexpr wchar_t kRepaired[] = L"完了";
constexpr wchar_t kDownloadQuestion[] =
    L"本機能は Vista の IE でダウンロードする時、\r\n"
    L"保存先が選べなくなったものを元に戻す機能です\r\n"
    L"実行してもよろしいですか？";

constexpr char kHandlers[] = "AllFilesystemObjects\\shellex\\ContextMenuHandlers";
constexpr char kSendToHandler[] = "AllFilesystemObjects\\shellex\\ContextMenuHandlers\\Send To";
constexpr char kSendTo[] = "Send To";
constexpr char kSendToClass[] = "{7BA4C740-9E81-11CF-99D3-00AA004AE837}";

// Of the copies that are kept.
constexpr wchar_t kSendToTitle[] = L"コンテキストメニューの「送る」";
constexpr wchar_t kDownloadTitle[] = L"ダウンロードの保存先";

constexpr char kAttachments[] = "Software\\Microsoft\\Windows\\Shell\\AttachmentExecute";
constexpr char kBrowserDownloads[] = "{0002DF01-0000-0000-C000-000000000046}";

bool SendToExists() {
    win::RegKey key;
    return RegOpenKeyExA(HKEY_CLASSES_ROOT, kSendToHandler, 0, KEY_QUERY_VALUE, key.put()) == ERROR_SUCCESS;
}

bool RestoreSendTo(HKEY handlers) {
    win::RegKey key;
    if (RegCreateKeyExA(handlers, kSendTo, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.put(), nullptr) !=
        ERROR_SUCCESS) {
        return false;
    }
    RegSetValueExA(key.get(), "", 0, REG_SZ, reinterpret_cast<const BYTE*>(kSendToClass), sizeof kSendToClass);
    return true;
}

bool KeepKey(HKEY parent, const char* name, const wchar_t* title, const win::BackupFolder& backup) {
    return backup.keep_key(parent, win::FromAnsi(name), title);
}

void RepairSendTo(std::wstring_view caption, const win::BackupFolder& backup, ui::Host& host) {
    win::RegKey handlers;
    if (RegOpenKeyExA(HKEY_CLASSES_ROOT, kHandlers, 0, KEY_SET_VALUE, handlers.put()) != ERROR_SUCCESS) return;
    const bool kept = KeepKey(handlers.get(), kSendTo, kSendToTitle, backup);
    if (caption == kRemoveSendTo) {
        RegDeleteKeyA(handlers.get(), kSendTo);
        host.set_status(kRemoved);
    } else if (RestoreSendTo(handlers.get())) {
        host.set_status(kRestored);
    }
    if (!kept) host.set_status(win::kNothingKept);
}

// Cancel repairs as well: users know the question as a mere announcement, and the repair takes nothing from them.
void RepairDownloadLocation(const win::BackupFolder& backup, ui::Host& host) {
    host.confirm(kDownloadQuestion);
    win::RegKey attachments;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, kAttachments, 0, KEY_SET_VALUE, attachments.put()) != ERROR_SUCCESS) return;
    const bool kept = KeepKey(attachments.get(), kBrowserDownloads, kDownloadTitle, backup);
    RegDeleteKeyA(attachments.get(), kBrowserDownloads);
    host.set_status(kRepaired);
    if (!kept) host.set_status(win::kNothingKept);
}

}  // namespace

RepairItems RepairItemsFor(bool send_to_exists, const win::OsVersion& os) {
    return {send_to_exists ? kRemoveSendTo : kRestoreSendTo, os.IsAtLeast(5, 1)};
}

RepairItems QueryRepairItems(const win::OsVersion& os) { return RepairItemsFor(SendToExists(), os); }

void RunRepair(int index, std::wstring_view caption, const win::BackupFolder& backup, ui::Host& host) {
    if (index == RepairItem::SendTo) RepairSendTo(caption, backup, host);
    if (index == RepairItem::DownloadLocation) RepairDownloadLocation(backup, host);
}

}  // namespace tools
