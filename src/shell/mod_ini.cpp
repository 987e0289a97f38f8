#include "shell/mod_ini.h"

#include "win/platform.h"
#include "win/text.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace shell {
namespace {

constexpr char kSection[] = "Morlet";
constexpr DWORD kTextLength = 1024;
constexpr std::int64_t kTwipsPerInch = 1440;

// The profile functions want an ANSI path. A folder whose name the code page lacks is reached by its short name.
std::string AnsiPath(std::wstring_view path) {
    std::string ansi = win::ToAnsi(path);
    if (win::FromAnsi(ansi) == path) return ansi;
    const std::size_t slash = path.rfind(L'\\');
    if (slash == path.npos) return ansi;
    const std::wstring folder(path.substr(0, slash));
    wchar_t short_folder[MAX_PATH] = {};
    const DWORD length = GetShortPathNameW(folder.c_str(), short_folder, MAX_PATH);
    if (length == 0 || length >= MAX_PATH) return ansi;
    return win::ToAnsi(short_folder + std::wstring(path.substr(slash)));
}

int Scale(std::int64_t value, std::int64_t numerator, std::int64_t denominator) {
    const std::int64_t scaled = value * numerator * 2;
    const std::int64_t half = scaled < 0 ? -denominator : denominator;
    return static_cast<int>(std::clamp<std::int64_t>((scaled + half) / (2 * denominator),
                                                     std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

}  // namespace

Settings::Settings(std::wstring_view file) : file_(AnsiPath(file)) {}

std::wstring Settings::text(std::string_view key) const {
    char value[kTextLength] = {};
    const DWORD length =
        GetPrivateProfileStringA(kSection, std::string(key).c_str(), "", value, kTextLength, file_.c_str());
    return std::wstring(win::CutAtNul(win::FromAnsi({value, std::min(length, kTextLength)})));
}

int Settings::number(std::string_view key, int missing) const {
    return static_cast<int>(GetPrivateProfileIntA(kSection, std::string(key).c_str(), missing, file_.c_str()));
}

void Settings::write(std::string_view key, std::wstring_view value) const {
    WritePrivateProfileStringA(kSection, std::string(key).c_str(), win::ToAnsi(value).c_str(), file_.c_str());
}

void Settings::write(std::string_view key, int value) const { write(key, win::ToText(value)); }

std::string ColumnKey(int column, int list) { return win::ToAnsi(win::ToText(column) + L"Col" + win::ToText(list)); }

int PixelsFromTwips(int twips, int dpi) { return Scale(twips, dpi, kTwipsPerInch); }

int TwipsFromPixels(int pixels, int dpi) { return Scale(pixels, kTwipsPerInch, dpi); }

}  // namespace shell
