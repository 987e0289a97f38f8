#include "win/size_text.h"

#include "win/text.h"

namespace win {
namespace {

struct Unit {
    std::uint64_t bytes;
    const wchar_t* name;
};

constexpr Unit kUnits[] = {{1U << 30, L" GB"}, {1U << 20, L" MB"}, {1U << 10, L" KB"}};

constexpr std::wstring_view kMegabyteUnit = L"MB";
constexpr std::size_t kSortKeyLength = 8;  // "00000.00"

}  // namespace

std::wstring SizeText(std::uint64_t byte_count) {
    for (const Unit& unit : kUnits) {
        if (byte_count >= unit.bytes) return win::TwoDecimals(byte_count, unit.bytes) + unit.name;
    }
    return win::ToText(byte_count) + L" Byte";
}

std::wstring FileTotalText(std::uint64_t file_count, std::uint64_t byte_count) {
    return L"ファイル総数 " + win::ToText(file_count) + L"個 (" + SizeText(byte_count) + L")";
}

std::wstring MegabyteText(std::uint32_t kilobytes) {
    return win::TwoDecimals(kilobytes, 1024) + std::wstring(kMegabyteUnit);
}

std::wstring SizeSortKey(const std::wstring& megabyte_text) {
    std::wstring key = megabyte_text.substr(0, megabyte_text.size() - kMegabyteUnit.size());
    if (key.size() < kSortKeyLength) key.insert(0, kSortKeyLength - key.size(), L'0');
    return key;
}

}  // namespace win
