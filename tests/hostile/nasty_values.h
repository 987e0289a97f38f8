// Registry values that have broken something, or might: every place that is read meets each of them, in this order,
// before the random ones.
#pragma once

#include "win/platform.h"

#include <string_view>

namespace hostile {

using namespace std::string_view_literals;

struct NastyValue {
    DWORD type;
    std::wstring_view text;
    std::size_t bytes;  // the size of the value: the text is cut off there, or goes on with bytes 0x30
};

inline constexpr NastyValue kNastyValues[] = {
    // Found: MAX_PATH characters without an end. Wine wrote the end of a folder's path behind the buffer.
    {REG_SZ, L"C:\\"sv, 2 * MAX_PATH},
    {REG_EXPAND_SZ, L"%windir%\\"sv, 2 * MAX_PATH},
    // Found: as long as the buffer of the details and without an end. All 256 characters are read.
    {REG_BINARY, L""sv, 256},
    // Nothing, and less than one character or number.
    {REG_SZ, L""sv, 0},
    {REG_SZ, L"A"sv, 1},
    {REG_EXPAND_SZ, L"%"sv, 2},
    {REG_DWORD, L""sv, 0},
    {REG_DWORD, L""sv, 3},
    // Around the ends of the buffers, odd sizes among them.
    {REG_DWORD, L"\xFFFF\xFFFF"sv, 5},
    {REG_QWORD, L"\xFFFF\xFFFF\xFFFF\xFFFF"sv, 8},
    {REG_SZ, L"\xD800"sv, 255},
    {REG_SZ, L"\"C:\\"sv, 257},
    {REG_SZ, L"\"C:\\"sv, 511},
    {REG_SZ, L"http://"sv, 512},
    {REG_SZ, L"http://"sv, 513},
    {REG_MULTI_SZ, L"a\0b\0\0"sv, 1023},
    {REG_SZ, L"%programfiles%"sv, 1024},
    {REG_SZ, L"too long"sv, 1025},
    {REG_SZ, L"far too long"sv, 1U << 20},
    // Types that are no text.
    {REG_NONE, L"none"sv, 8},
    {REG_LINK, L"\\Registry\\Machine\\Software"sv, 58},
    {REG_MULTI_SZ, L"\0\0\0"sv, 6},
    {0xFFFFFFFF, L"no type\0"sv, 16},
};

}  // namespace hostile
