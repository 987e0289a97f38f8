// setting.ini beside the executable: section "Morlet", decimal numbers, the system's ANSI code page.
#pragma once

#include "win/handle.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace shell {

// The keys, beside those that ColumnKey makes.
inline constexpr char kIconKey[] = "Icon";  // these three: not 0 where the View item is checked
inline constexpr char kStripeKey[] = "Stripe";
inline constexpr char kSystemComponentsKey[] = "SysCom";
inline constexpr char kMemoryReleaseKey[] = "Mem";  // the path of the memory-release program
inline constexpr char kFontKey[] = "Font";          // a face name; written by hand only
inline constexpr char kBackupKey[] = "Backup";      // "0": no copy of what is deleted; written by hand only
inline constexpr char kWindowStateKey[] = "WinState";
inline constexpr char kLeftKey[] = "X";  // these four: of the window, in twips
inline constexpr char kTopKey[] = "Y";
inline constexpr char kWidthKey[] = "W";
inline constexpr char kHeightKey[] = "H";

class Settings {
public:
    Settings() = default;
    // `file` is the full path. The section is read here, in one go: the profile functions open the file again for every
    // single key, and a start asks for thirty.
    explicit Settings(std::wstring_view file);

    // The first 1023 bytes of the value, as GetPrivateProfileStringA has it; empty when the key is missing.
    std::wstring text(std::string_view key) const;
    // As GetPrivateProfileIntA: `missing` when the key is missing or has no value, 0 for what is no number.
    int number(std::string_view key, int missing) const;
    // WritePrivateProfileStringA. A file that cannot be written is left as it is, without a word. What is written is
    // not read back.
    void write(std::string_view key, std::wstring_view value) const;
    void write(std::string_view key, int value) const;

private:
    std::string_view value(std::string_view key) const;

    std::string file_;
    std::vector<std::pair<std::string, std::string>> values_;  // by key, in the order of the file
};

// While it lives no other instance writes: two that close together write one after the other. Whoever waits too long
// writes all the same.
class SavingTurn {
public:
    SavingTurn();
    SavingTurn(const SavingTurn&) = delete;
    SavingTurn& operator=(const SavingTurn&) = delete;
    ~SavingTurn();

private:
    win::Handle mutex_;
};

// The key of a stored column width: the 1-based column, "Col", the list's suffix ("7Col0").
std::string ColumnKey(int column, int list);

// Twips (1/1440 inch) and pixels, rounded to nearest: a window moved to what was stored is stored the same again.
int PixelsFromTwips(int twips, int dpi);
int TwipsFromPixels(int pixels, int dpi);

}  // namespace shell
