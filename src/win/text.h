// Text, UTF-16 as everywhere in the program, and the few formats the views share. Nothing here asks the system.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace win {

// The text before the first NUL; the whole of it when there is none.
std::wstring_view CutAtNul(std::wstring_view text);

bool Contains(std::wstring_view text, std::wstring_view part);

// Whether a drive can have this letter, small or capital.
bool IsDriveLetter(wchar_t letter);

// Without the blanks (U+0020 only) at both ends; without the leading ones.
std::wstring_view TrimBlanks(std::wstring_view text);
std::wstring_view TrimLeadingBlanks(std::wstring_view text);

std::wstring ReplaceAll(std::wstring_view text, std::wstring_view part, std::wstring_view with);

// Decimal text, whatever the locale.
std::wstring ToText(long long number);
std::wstring ToText(unsigned long long number);
inline std::wstring ToText(int number) { return ToText(static_cast<long long>(number)); }
inline std::wstring ToText(unsigned number) { return ToText(static_cast<unsigned long long>(number)); }
inline std::wstring ToText(long number) { return ToText(static_cast<long long>(number)); }
inline std::wstring ToText(unsigned long number) { return ToText(static_cast<unsigned long long>(number)); }

// Decimal text with at least `digits` digits, zeros in front.
std::wstring PadZeros(std::uint64_t number, int digits);

// numerator / denominator with exactly two decimals and ".", rounded half away from zero on the exact quotient.
// The denominator lies between 1 and 2^32.
std::wstring TwoDecimals(std::uint64_t numerator, std::uint64_t denominator);

// A leading decimal integer: blanks, sign, digits. Too large a number becomes the largest; 0 where there is none.
int ToInteger(std::wstring_view text);

}  // namespace win
