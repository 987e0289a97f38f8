// Text: UTF-16 inside the program, the system's code page at the ANSI calls, and the few formats the views share.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace win {

// The text before the first NUL; the whole of it when there is none.
std::wstring_view CutAtNul(std::wstring_view text);

// UTF-16 to the system's ANSI code page and back. Characters that the page lacks become what Windows puts for them.
std::string ToAnsi(std::wstring_view text);
std::wstring FromAnsi(std::string_view text);

// Lower case as the user interface compares: CharLowerBuffW, one character to one character.
std::wstring LowerCase(std::wstring_view text);

bool Contains(std::wstring_view text, std::wstring_view part);

// Without the blanks (U+0020 only) at both ends; without the leading ones.
std::wstring_view TrimBlanks(std::wstring_view text);
std::wstring_view TrimLeadingBlanks(std::wstring_view text);

std::wstring ReplaceAll(std::wstring_view text, std::wstring_view part, std::wstring_view with);

// Decimal text, whatever the locale.
std::wstring ToText(std::int64_t number);
std::wstring ToText(std::uint64_t number);
inline std::wstring ToText(int number) { return ToText(static_cast<std::int64_t>(number)); }
inline std::wstring ToText(unsigned number) { return ToText(static_cast<std::uint64_t>(number)); }
inline std::wstring ToText(long number) { return ToText(static_cast<std::int64_t>(number)); }
inline std::wstring ToText(unsigned long number) { return ToText(static_cast<std::uint64_t>(number)); }

// Decimal text with at least `digits` digits, zeros in front.
std::wstring PadZeros(std::uint64_t number, int digits);

// numerator / denominator with exactly two decimals and ".", rounded half away from zero on the exact quotient.
// The denominator lies between 1 and 2^32.
std::wstring TwoDecimals(std::uint64_t numerator, std::uint64_t denominator);

// A leading decimal integer as the profile functions read it: blanks, sign, digits; 0 where there is none.
int ToInteger(std::wstring_view text);

}  // namespace win
