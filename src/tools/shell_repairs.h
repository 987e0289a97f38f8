// mnuSet, the menu of two repairs of the Windows shell in the registry.
#pragma once

#include "ui/host.h"
#include "ui/menu.h"
#include "win/backup_folder.h"
#include "win/os_version.h"

#include <string_view>

namespace tools {

struct RepairItem {
    enum Index : int { SendTo = 5, DownloadLocation = 9 };
};

inline constexpr wchar_t kRemoveSendTo[] = L"コンテキストメニューの「送る」を削除 (XP/Vista)";  // while it is there

inline constexpr ui::MenuItem kRepairMenu[] = {
    {RepairItem::SendTo, kRemoveSendTo, L"ファイルの右クリックメニューの「送る」を削除または復元します"},
    {6, ui::kSeparator},
    {RepairItem::DownloadLocation, L"ダウンロードの保存先が指定できなくなった際の対処 (Vista)",
     L"ダウンロードの保存先を選べなくなった設定を元に戻します"},
};

// What the menu shows. Item SendTo is always enabled, item DownloadLocation keeps its caption.
struct RepairItems {
    const wchar_t* send_to_caption;
    bool download_location_enabled;
};

// From the facts: whether the handler of "Send To" is there, and the version of Windows.
RepairItems RepairItemsFor(bool send_to_exists, const win::OsVersion& os);

// What the menu shows when it opens.
RepairItems QueryRepairItems(const win::OsVersion& os);

// Runs an item of mnuSetItem. `caption` is what the menu shows for item SendTo and decides between removing and
// restoring; item DownloadLocation takes no notice of it. Failures are silent.
void RunRepair(int index, std::wstring_view caption, const win::BackupFolder& backup, ui::Host& host);

}  // namespace tools
