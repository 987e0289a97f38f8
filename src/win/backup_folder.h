// Where what is about to be deleted is kept, so that it can be brought back: one file per deletion, in the folder
// "backup" beside the program or, where nothing can be written there, in "Qorvenix\backup" of the user's application
// data.
#pragma once

#include "win/platform.h"

#include <string>
#include <string_view>
#include <utility>

namespace win {

// For the status bar, when there is no copy of what was deleted.
inline constexpr wchar_t kNothingKept[] = L"バックアップを保存できませんでした。";

class BackupFolder {
public:
    // Keeps nothing, and reports success.
    BackupFolder() = default;
    explicit BackupFolder(std::wstring application_folder) : application_folder_(std::move(application_folder)) {}

    // Each keeps what is there, in a file whose name begins with date and time and goes on with `title`. False when
    // there is something and no copy of it; the deletion goes on all the same. A file is written whole or not at all.
    // The two hundred newest of a folder stay.
    bool keep_key(HKEY root, const std::wstring& key_path, std::wstring_view title) const;
    bool keep_value(HKEY root, const std::wstring& key_path, const std::wstring& name, std::wstring_view title) const;
    // A copy with the times and attributes of `file`; its name is the title.
    bool keep_file(const std::wstring& file) const;

private:
    std::wstring application_folder_;
};

}  // namespace win
