// mnuDelete, the menu of the clean-up commands.
#pragma once

#include "ui/host.h"
#include "ui/menu.h"

#include <cstdint>

namespace tools {

struct CleanupItem {
    enum Index : int { RecycleBin, TemporaryFiles, RecentDocuments, BrowserCache, Cookies, UrlHistory };
};

inline constexpr wchar_t kEmptyBin[] = L"ごみ箱を空にする(&E)";  // while there is something in it

inline constexpr ui::MenuItem kCleanupMenu[] = {
    {CleanupItem::RecycleBin, kEmptyBin, L"すべてのドライブのごみ箱を空にします"},
    {CleanupItem::TemporaryFiles, L"一時ファイルの削除(&T)", L"一時フォルダの中のファイルを削除します"},
    {CleanupItem::RecentDocuments, L"最近使ったファイル一覧のクリア(&R)", L"最近使ったファイルの一覧を消去します"},
    {CleanupItem::BrowserCache, L"IEキャッシュファイルの削除(&I)",
     L"Internet Explorerのキャッシュファイルを削除します"},
    {CleanupItem::Cookies, L"Cookieの削除(&C)", L"Internet ExplorerのCookieを削除します"},
    {CleanupItem::UrlHistory, L"IEのURL履歴を削除(&U)", L"Internet ExplorerのURL履歴を削除します"},
};

struct ItemState {
    const wchar_t* caption;
    bool enabled;
};

// Item RecycleBin for a number of items in all recycle bins.
ItemState RecycleBinItem(std::uint64_t items);

// What the menu shows when it opens: item RecycleBin for the recycle bins as they are.
ItemState mnuDelete_Click();

// Runs an item of mnuDeleteItem between its two status texts; the second one follows whatever came of it, but that a
// temporary folder which may not be emptied is told as such. Counts as something running until it returns. True when
// the recycle bin was emptied: a report that shows it is then out of date.
bool mnuDeleteItem_Click(int index, ui::Host& host);

}  // namespace tools
