#include "tools/cleanup.h"

#include "tools/modFile.h"
#include "tools/modURL.h"
#include "tools/temp_folder.h"

namespace tools {
namespace {

constexpr wchar_t kBinIsEmpty[] = L"ごみ箱を空にする(空)";
constexpr wchar_t kDeleting[] = L"削除処理中です...";
constexpr wchar_t kDeleted[] = L"削除完了";
constexpr wchar_t kTempFolderKept[] = L"安全のため、この一時フォルダの中身は削除しませんでした";

// The text that tells what came of it.
const wchar_t* DeleteTemporaryFiles(ui::Host& host) {
    const auto folder = TempFolderToEmpty();
    if (!folder) return kTempFolderKept;
    DeleteFolderContents(*folder, L"*.*", host);
    return kDeleted;
}

// Windows clears its list of recent documents when it is given none.
void ClearRecentDocuments() { SHAddToRecentDocs(SHARD_PATHA, nullptr); }

// True when the recycle bin was emptied.
bool Run(int index, ui::Host& host) {
    switch (index) {
        case CleanupItem::RecycleBin:
            return EmptyRecycleBin(true, {}, 0, host);
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

ItemState mnuDelete_Click() { return RecycleBinItem(GetRecycleBinCount()); }

bool mnuDeleteItem_Click(int index, ui::Host& host) {
    host.status(kDeleting);
    const bool temporary_files = index == CleanupItem::TemporaryFiles;
    const bool bin_emptied = !temporary_files && Run(index, host);
    host.status(temporary_files ? DeleteTemporaryFiles(host) : kDeleted);
    return bin_emptied;
}

}  // namespace tools
