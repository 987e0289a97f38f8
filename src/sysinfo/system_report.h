// The text of the system report from the facts it tells. Nothing here asks the machine.
#pragma once

#include <span>
#include <string>

namespace sysinfo {

// What the report tells, as text; a fact that could not be had is empty.
struct SystemFacts {
    std::wstring os_name;
    std::wstring user_name;
    std::wstring computer_name;
    std::wstring ip_address;
    std::wstring resolution;
    std::wstring display_inches;
    std::wstring keyboard_type;
    std::wstring keyboard_subtype;
    std::wstring function_keys;
    std::wstring recycle_bin;
    std::wstring explorer_version;
    std::wstring controls_version;
};

// A line of the report: label, tab characters, value, unit. A line without a value is a heading or empty.
struct ReportLine {
    const wchar_t* label = L"";
    int tabs = 0;
    std::wstring SystemFacts::*value = nullptr;
    const wchar_t* unit = L"";
};
std::span<const ReportLine> ReportLines();

// The report. It begins with a line break, as a margin, and ends without one.
std::wstring SystemReportText(const SystemFacts& facts);

// "1280 x 1024".
std::wstring Resolution(int width, int height);

// The diagonal of the screen in whole inches, as far as pixels and dots per logical inch tell it: both sides are
// rounded to whole inches first, halves to the even number. Empty for a screen without a size.
std::wstring DisplayInches(int width, int height, int dpi_x, int dpi_y);

// By the number that GetKeyboardType tells; empty for every other one.
std::wstring KeyboardTypeName(int type);
std::wstring KeyboardSubtypeName(int subtype);

struct LabelExtent {
    int width;  // pixels
    int tabs;
};

// The distance of the tab stops, in quarters of `character_width` pixels, that puts the most values into one column,
// the second, clear of their labels. The report's tabs are fixed, so it depends on the font whether all values fit.
int BestTabDistance(std::span<const LabelExtent> labels, int character_width);

}  // namespace sysinfo
