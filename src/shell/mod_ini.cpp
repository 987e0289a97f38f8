#include "shell/mod_ini.h"

#include "win/platform.h"
#include "win/system_text.h"
#include "win/text.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace shell {
namespace {

constexpr char kSection[] = "Morlet";
constexpr std::size_t kTextLength = 1023;
constexpr DWORD kSectionLength = 8192;
constexpr DWORD kLongestSection = 1 << 24;
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

// "key=value" after "key=value", each with its NUL.
std::string ReadSection(const std::string& file) {
    for (DWORD room = kSectionLength;; room *= 2) {
        std::string lines(room, '\0');
        const DWORD length = GetPrivateProfileSectionA(kSection, lines.data(), room, file.c_str());
        lines.resize(length);
        if (length + 2 < room || room >= kLongestSection) return lines;
    }
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// One pair of quotes around the whole value belongs to the file, not to the value.
std::string_view WithoutQuotes(std::string_view value) {
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

bool SameKey(const std::string& left, std::string_view right) {
    return left.size() == right.size() && _strnicmp(left.c_str(), right.data(), right.size()) == 0;
}

int Scale(std::int64_t value, std::int64_t numerator, std::int64_t denominator) {
    const std::int64_t scaled = value * numerator * 2;
    const std::int64_t half = scaled < 0 ? -denominator : denominator;
    return static_cast<int>(std::clamp<std::int64_t>((scaled + half) / (2 * denominator),
                                                     std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

}  // namespace

Settings::Settings(std::wstring_view file) : file_(AnsiPath(file)) {
    const std::string section = ReadSection(file_);
    for (std::string_view left = section; !left.empty();) {
        const std::string_view line = left.substr(0, left.find('\0'));
        left.remove_prefix(std::min(line.size() + 1, left.size()));
        const std::size_t equals = line.find('=');
        if (equals == line.npos) continue;
        // Whether the blanks around the equals sign are left out here already differs from system to system.
        values_.emplace_back(Trimmed(line.substr(0, equals)), WithoutQuotes(Trimmed(line.substr(equals + 1))));
    }
}

std::string_view Settings::value(std::string_view key) const {
    const auto found =
        std::find_if(values_.begin(), values_.end(), [key](const auto& each) { return SameKey(each.first, key); });
    return found == values_.end() ? std::string_view() : found->second;
}

std::wstring Settings::text(std::string_view key) const { return win::FromAnsi(value(key).substr(0, kTextLength)); }

int Settings::number(std::string_view key, int missing) const {
    const std::string digits(value(key));
    if (digits.empty()) return missing;
    const int base = digits.starts_with("0x") ? 16 : 10;
    // Too large a number wraps, as the profile functions have it.
    return static_cast<int>(static_cast<unsigned>(std::strtoull(digits.c_str(), nullptr, base)));
}

void Settings::write(std::string_view key, std::wstring_view value) const {
    WritePrivateProfileStringA(kSection, std::string(key).c_str(), win::ToAnsi(value).c_str(), file_.c_str());
}

void Settings::write(std::string_view key, int value) const { write(key, win::ToText(value)); }

SavingTurn::SavingTurn() : mutex_(CreateMutexW(nullptr, FALSE, L"Qorvenix.setting.ini")) {
    constexpr DWORD kLongestWait = 1000;  // milliseconds
    if (mutex_) WaitForSingleObject(mutex_.get(), kLongestWait);
}

SavingTurn::~SavingTurn() {
    if (mutex_) ReleaseMutex(mutex_.get());
}

std::string ColumnKey(int column, int list) { return win::ToAnsi(win::ToText(column) + L"Col" + win::ToText(list)); }

int PixelsFromTwips(int twips, int dpi) { return Scale(twips, dpi, kTwipsPerInch); }

int TwipsFromPixels(int pixels, int dpi) { return Scale(pixels, kTwipsPerInch, dpi); }

}  // namespace shell
