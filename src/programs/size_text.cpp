#include "programs/size_text.h"

#include "win/text.h"

namespace programs {
namespace {

struct Unit {
    std::uint64_t bytes;
    const wchar_t* name;
};

constexpr Unit kUnits[] = {{1U << 30, L" GB"}, {1U << 20, L" MB"}, {1U << 10, L" KB"}};

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

}  // namespace programs
