// The list of programs that Windows starts at log-on.
#pragma once

#include "ui/host.h"
#include "ui/list_view.h"

#include <string>
#include <string_view>

namespace startup {

struct StartupColumn {
    enum Index : int {
        Name,      // the file's name, or the registry value's
        Value,     // the shortcut's target, the file's path, or the command line as stored
        Location,  // the folder, or the tag of a programs::Hive and the registry key
        Description,
    };
};

// In the order of StartupColumn.
inline constexpr ui::Column kStartupColumns[] = {{L"名前", 150}, {L"値", 350}, {L"場所", 345}, {L"説明", 200}};

// Stands directly behind the target of a shortcut that leads nowhere.
inline constexpr std::wstring_view kBrokenLink = L"<リンク切れ>";

// The keys whose values are started at log-on, in each programs::Hive; the last two are the machine's 32-bit ones as a
// 64-bit program finds them.
inline constexpr wchar_t kRunKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
inline constexpr wchar_t kRunOnceKey[] = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
inline constexpr wchar_t kRunKey32[] = L"SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\Run";
inline constexpr wchar_t kRunOnceKey32[] = L"SOFTWARE\\Wow6432Node\\Microsoft\\Windows\\CurrentVersion\\RunOnce";

// The row's tag where the value's real name goes on behind a NUL. Windows' functions take the shown part for the name
// of another value, or of none.
inline constexpr LPARAM kEmbeddedNul = 1;

// A file's row shows its name without the blanks at both ends; how many those are stands in the row's tag too.
struct TrimmedName {
    std::wstring_view shown;
    std::size_t blanks_before;
    std::size_t blanks_behind;

    static TrimmedName of(std::wstring_view name);
    static TrimmedName of(std::wstring_view shown, LPARAM data);
    LPARAM item_data() const;
    std::wstring whole() const;
};

// Empties the list and fills it: the user's startup folder, that of all users, Run and RunOnce of the machine (in the
// 64-bit edition the 32-bit ones behind them), Run and RunOnce of the user. Messages are processed between all of
// these. Row images are indexes into the system's small image list, which the list must already have.
void ScanStartup(const ui::ListView& list, ui::Host& host);

}  // namespace startup
