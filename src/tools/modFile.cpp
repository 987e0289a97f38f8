#include "tools/modFile.h"

#include "startup/path.h"
#include "tools/real_path.h"
#include "win/recycle_bin.h"
#include "win/size_text.h"

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
    FolderCleaner(const std::wstring& folder, ui::Host& host)
        : host_(host), pump_(host), links_show_(VolumeMarksLinks(folder)), path_(folder) {}

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
        remove_folder(Extended(path_));
        path_.resize(levels_.back().path_length);
        found_ = !stopping_ && FindNextFileW(levels_.back().find.get(), &entry_) != FALSE;
    }

    // Read-only folders too, which Windows does not remove.
    void remove_folder(const std::wstring& folder) const {
        if (!lies_here(folder) || RemoveDirectoryW(folder.c_str()) || GetLastError() != ERROR_ACCESS_DENIED) return;
        const DWORD attributes = GetFileAttributesW(folder.c_str());
        if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0) return;
        SetFileAttributesW(folder.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
        if (!RemoveDirectoryW(folder.c_str())) SetFileAttributesW(folder.c_str(), attributes);
    }

    // True when the entry was a folder that is now the innermost one.
    bool handle_entry() {
        if (IsLink(entry_)) return false;
        if ((entry_.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) {
            if ((entry_.dwFileAttributes & FILE_ATTRIBUTE_SYSTEM) == 0) delete_file();
            return false;
        }
        if (IsDots(entry_.cFileName)) return false;
        path_ = startup::JoinPath(path_, entry_.cFileName);
        if (enter(kAllFiles)) return true;
        path_.resize(levels_.back().path_length);
        return false;
    }

    void delete_file() const {
        const std::wstring file = Extended(startup::JoinPath(path_, entry_.cFileName));
        if (remove_file(file)) return;
        const DWORD attributes = entry_.dwFileAttributes;
        if (GetLastError() != ERROR_ACCESS_DENIED || (attributes & FILE_ATTRIBUTE_READONLY) == 0) return;
        // Read-only files go too, but Windows deletes none. A file with more names stays: its attributes are one, and
        // the other names may lie outside.
        if (!lies_here(file) || !HasOneName(file)) return;
        SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_NORMAL);
        if (!remove_file(file)) SetFileAttributesW(file.c_str(), attributes);
    }

    bool remove_file(const std::wstring& file) const {
        return links_show_ ? DeleteFileW(file.c_str()) != FALSE : DeleteRealFile(file);
    }

    // False for a link that looks like what it leads to.
    bool lies_here(const std::wstring& path) const { return links_show_ || LiesAt(RealPath(path), path); }

    ui::Host& host_;
    ui::PumpThrottle pump_;
    const bool links_show_;
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
        const std::wstring question = kEmptyBinQuestion + win::FileTotalText(bin->items, bin->bytes);
        if (host.confirm(question, kEmptyBinTitle, MB_ICONQUESTION) != ui::Answer::Ok) return false;
    }
    return SUCCEEDED(SHEmptyRecycleBinA(nullptr, root.c_str(), flags));
}

void DeleteFolderContents(const std::wstring& folder, std::wstring_view pattern, ui::Host& host) {
    FolderCleaner(folder, host).run(pattern);
}

}  // namespace tools
