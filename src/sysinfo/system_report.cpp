#include "sysinfo/system_report.h"

#include "win/text.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace sysinfo {
namespace {

constexpr ReportLine kLines[] = {
    {},
    {L"OS", 2, &SystemFacts::os_name},
    {},
    {L"ユーザー名", 1, &SystemFacts::user_name},
    {L"コンピュータ名", 1, &SystemFacts::computer_name},
    {L"IPアドレス", 2, &SystemFacts::ip_address},
    {},
    {L"画面の解像度", 1, &SystemFacts::resolution, L" ピクセル"},
    {L"ディスプレイサイズ", 1, &SystemFacts::display_inches, L" インチ"},
    {},
    {L"キーボードの種類", 1, &SystemFacts::keyboard_type},
    {L"サブタイプ", 2, &SystemFacts::keyboard_subtype},
    {L"ファンクションキー数", 1, &SystemFacts::function_keys},
    {},
    {L"ごみ箱", 2, &SystemFacts::recycle_bin},
    {},
    {L"[バージョン情報]"},
    {L"Internet Explorer", 1, &SystemFacts::explorer_version},
    {L"ComCtl32.dll", 1, &SystemFacts::controls_version},
};

// By keyboard type, from 1 on, and by subtype, from 0 on.
constexpr const wchar_t* kKeyboardTypes[] = {
    L"IBM(R) PC/XT(R)または互換性のある(83キー)キーボード",
    L"Olivetti(R)ICO(102キー)キーボード",
    L"IBM AT(R)(84キー)または同型のキーボード",
    L"IBM拡張(101または102キー)キーボード",
    L"Nokia(R) 1050および同型のキーボード",
    L"Nokia 9140および同型のキーボード",
    L"日本語キーボード",
};
constexpr const wchar_t* kKeyboardSubtypes[] = {
    L"101キーボード", L"AXキーボード", L"106キーボード", L"IBM-5576 002/003キーボード", L"IBM-5576 001キーボード",
};

std::wstring NameAt(std::span<const wchar_t* const> names, int index) {
    return index >= 0 && index < std::ssize(names) ? names[static_cast<std::size_t>(index)] : std::wstring();
}

int RoundHalfToEven(int numerator, int denominator) {
    const int whole = numerator / denominator;
    const int twice_rest = numerator % denominator * 2;
    const bool up = twice_rest > denominator || (twice_rest == denominator && whole % 2 != 0);
    return whole + (up ? 1 : 0);
}

// The square root of a whole number lies never half-way between two, so that only "nearest" is left to decide.
std::int64_t NearestRoot(std::int64_t square) {
    std::int64_t root = 0;
    while ((root + 1) * (root + 1) <= square)
        ++root;
    return square - root * root > root ? root + 1 : root;
}

// A value stands at the stop behind its last tab; the second one is where the tabs of the report aim.
bool StandsInSecondColumn(const LabelExtent& label, int distance, int gap) {
    return label.width / distance + label.tabs == 2 && 2 * distance - label.width >= gap;
}

}  // namespace

std::span<const ReportLine> ReportLines() { return kLines; }

std::wstring SystemReportText(const SystemFacts& facts) {
    std::wstring text;
    for (const ReportLine& line : kLines) {
        if (&line != kLines) text += L"\r\n";
        text += line.label;
        text.append(static_cast<std::size_t>(line.tabs), L'\t');
        if (line.value) text += facts.*line.value;
        text += line.unit;
    }
    return text;
}

std::wstring Resolution(int width, int height) { return win::ToText(width) + L" x " + win::ToText(height); }

std::wstring DisplayInches(int width, int height, int dpi_x, int dpi_y) {
    if (width <= 0 || height <= 0 || dpi_x <= 0 || dpi_y <= 0) return {};
    const std::int64_t x = RoundHalfToEven(width, dpi_x);
    const std::int64_t y = RoundHalfToEven(height, dpi_y);
    return win::ToText(NearestRoot(x * x + y * y));
}

std::wstring KeyboardTypeName(int type) { return NameAt(kKeyboardTypes, type - 1); }

std::wstring KeyboardSubtypeName(int subtype) { return NameAt(kKeyboardSubtypes, subtype); }

int BestTabDistance(std::span<const LabelExtent> labels, int character_width) {
    constexpr int kUsual = 32;  // what an edit control takes by itself
    constexpr int kShortest = 8;
    constexpr int kLongest = 128;
    int most = 0;
    int first = kUsual;
    int last = kUsual;
    for (int distance = kShortest; distance <= kLongest; ++distance) {
        const int pixels = std::max(distance * character_width / 4, 1);
        int aligned = 0;
        for (const LabelExtent& label : labels) {
            if (StandsInSecondColumn(label, pixels, character_width / 2)) ++aligned;
        }
        if (aligned > most) {
            most = aligned;
            first = last = distance;
        } else if (aligned == most && most > 0 && last == distance - 1) {
            last = distance;
        }
    }
    // From the middle of the distances that serve, a pixel's difference in the control's own measuring does no harm.
    return (first + last + 1) / 2;
}

}  // namespace sysinfo
