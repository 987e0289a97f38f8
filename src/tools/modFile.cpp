#include "tools/modFile.h"

#include "programs/size_text.h"
#include "startup/path.h"
#include "tools/real_path.h"
#include "win/recycle_bin.h"

#include <vector>

namespace tools {
namespace {

constexpr wchar_t kEmptyBinTitle[] = L"ファイル削除の確認";
constexpr wchar_t kEmptyBinQuestion[] = L"ごみ箱を空にしますか？\r\n\r\n";

constexpr wchar_t kAllFiles[] = L"*.*";

bool IsDots(std::wstring_view name) { return name == L"." || name == L".."; }

// One deletion. Folders are entered without recursion, because paths can be deeper than the stack.
class FolderCleaner {
public:
    FolderCleaner(const std::wstring& folder, ui::Host& host) : host_(host), pump_(host), path_(folder) {}

    void run(std::wstring_view pattern) {
        enter(pattern);
        while (!levels_.empty()) {
            stopping_ = stopping_ || !pump_();
            if (!found_ || stopping_) {
                leave();
            } else if (!handle_entry()) {
                found_ = FindNextFileW(levels_.back().find.get(), &entry_) != FALSE;
            }
        }
    }

private:
    struct Level {
        win::File folder;  // holds the folder where it is
        win::FindHandle find;
        std::size_t path_length;
    };

    // Begins with the folder at path_; false when it cannot be opened or lies elsewhere.
    bool enter(std::wstring_view pattern) {
        win::File folder = OpenRealFolder(Extended(path_));
        if (!folder) return false;
        host_.hourglass(true);
        const std::wstring all = Extended(startup::JoinPath(path_, pattern));
        win::FindHandle find(FindFirstFileW(all.c_str(), &entry_));
        found_ = static_cast<bool>(find);
        levels_.push_back({std::move(folder), std::move(find), path_.size()});
        return true;
    }

    // Ends the innermost folder, removes it and goes on in the one around it. The default pointer returns with every
    // folder, also while the folder around it is still being emptied.
    void leave() {
        levels_.pop_back();
        host_.hourglass(false);
        if (levels_.empty()) return;
        DeleteRealEntry(Extended(path_));
        path_.resize(levels_.back().path_length);
        found_ = !stopping_ && FindNextFileW(levels_.back().find.get(), &entry_) != FALSE;
    }

    // True when the entry was a folder that is now the innermost one.
    bool handle_entry() {
        if (IsLink(entry_)) return false;
        if ((entry_.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            const std::wstring file = startup::JoinPath(path_, entry_.cFileName);
            if ((entry_.dwFileAttributes & FILE_ATTRIBUTE_SYSTEM) == 0) DeleteRealEntry(Extended(file));
            return false;
        }
        if (IsDots(entry_.cFileName)) return false;
        path_ = startup::JoinPath(path_, entry_.cFileName);
        if (enter(kAllFiles)) return true;
        DeleteRealEntry(Extended(path_));  // it may be empty though it cannot be listed
        path_.resize(levels_.back().path_length);
        return false;
    }

    ui::Host& host_;
    ui::PumpNowAndThen pump_;
    std::wstring path_;  // of the innermost folder
    std::vector<Level> levels_;
    WIN32_FIND_DATAW entry_ = {};
    bool found_ = false;  // entry_ is the innermost folder's next entry
    bool stopping_ = false;
};

}  // namespace

std::uint64_t GetRecycleBinCount() { return win::QueryRecycleBin({}).value_or(win::RecycleBin{}).items; }

bool EmptyRecycleBin(bool confirm, const std::string& root, DWORD flags, ui::Host& host) {
    if (confirm) {
        flags = SHERB_NOCONFIRMATION;
        const auto bin = win::QueryRecycleBin(root);
        if (!bin || bin->items == 0) return false;
        const std::wstring question = kEmptyBinQuestion + programs::FileTotalText(bin->items, bin->bytes);
        if (host.confirm(question, kEmptyBinTitle, MB_ICONQUESTION) != ui::Answer::Ok) return false;
    }
    return SUCCEEDED(SHEmptyRecycleBinA(nullptr, root.c_str(), flags));
}

void DeleteFolderContents(const std::wstring& folder, std::wstring_view pattern, ui::Host& host) {
    FolderCleaner(folder, host).run(pattern);
}

}  // namespace tools
