#include "tools/cleanup.h"

#include "tools/modFile.h"
#include "tools/modURL.h"
#include "tools/temp_folder.h"

namespace tools {
namespace {

constexpr wchar_t kBinIsEmpty[] = L"ごみ箱を空にする(空)";
constexpr wchar_t kDeleting[] = L"削除処理中です...";
constexpr wchar_t kDeleted[] = L"削除完了";

void DeleteTemporaryFiles(ui::Host& host) {
    if (const auto folder = TempFolderToEmpty()) DeleteFolderContents(*folder, L"*.*", host);
}

// Windows clears its list of recent documents when it is given none.
void ClearRecentDocuments() { SHAddToRecentDocs(SHARD_PATHA, nullptr); }

// True when the recycle bin was emptied.
bool Run(int index, ui::Host& host) {
    switch (index) {
        case CleanupItem::RecycleBin:
            return EmptyRecycleBin(true, {}, 0, host);
        case CleanupItem::TemporaryFiles:
            DeleteTemporaryFiles(host);
            break;
        case CleanupItem::RecentDocuments:
            ClearRecentDocuments();
            break;
        case CleanupItem::BrowserCache:
            DeleteUrlCacheEntries(false, host);
            break;
        case CleanupItem::Cookies:
            DeleteUrlCacheEntries(true, host);
            break;
        case CleanupItem::UrlHistory:
            ClearUrlHistory();
            break;
        default:
            break;
    }
    return false;
}

}  // namespace

ItemState RecycleBinItem(std::uint64_t items) {
    if (items == 0) return {kBinIsEmpty, false};
    return {kEmptyBin, true};
}

ItemState QueryRecycleBinItem() { return RecycleBinItem(GetRecycleBinCount()); }

bool RunCleanup(int index, ui::Host& host) {
    host.set_status(kDeleting);
    const bool bin_emptied = Run(index, host);
    host.set_status(kDeleted);
    return bin_emptied;
}

}  // namespace tools
