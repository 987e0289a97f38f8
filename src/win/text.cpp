#include "win/text.h"

#include <algorithm>
#include <limits>

namespace win {

std::wstring_view CutAtNul(std::wstring_view text) { return text.substr(0, text.find(L'\0')); }

bool IsDriveLetter(wchar_t letter) { return (letter >= L'A' && letter <= L'Z') || (letter >= L'a' && letter <= L'z'); }

bool Contains(std::wstring_view text, std::wstring_view part) { return text.find(part) != text.npos; }

std::wstring_view TrimLeadingBlanks(std::wstring_view text) {
    return text.substr(std::min(text.find_first_not_of(L' '), text.size()));
}

std::wstring_view TrimBlanks(std::wstring_view text) {
    text = TrimLeadingBlanks(text);
    return text.substr(0, text.find_last_not_of(L' ') + 1);
}

std::wstring ReplaceAll(std::wstring_view text, std::wstring_view part, std::wstring_view with) {
    std::wstring result;
    std::size_t from = 0;
    for (std::size_t at; (at = text.find(part, from)) != text.npos; from = at + part.size()) {
        result.append(text, from, at - from);
        result.append(with);
    }
    result.append(text, from);
    return result;
}

std::wstring ToText(unsigned long long number) { return PadZeros(number, 1); }

std::wstring ToText(long long number) {
    if (number >= 0) return ToText(static_cast<unsigned long long>(number));
    return L"-" + ToText(0ULL - static_cast<unsigned long long>(number));
}

std::wstring PadZeros(std::uint64_t number, int digits) {
    std::wstring text;
    for (; number != 0 || digits > 0; number /= 10, --digits) {
        text.insert(text.begin(), static_cast<wchar_t>(L'0' + number % 10));
    }
    return text;
}

std::wstring TwoDecimals(std::uint64_t numerator, std::uint64_t denominator) {
    std::uint64_t whole = numerator / denominator;
    std::uint64_t hundredths = ((numerator % denominator) * 200 + denominator) / (2 * denominator);
    whole += hundredths / 100;
    hundredths %= 100;
    return ToText(whole) + L"." + PadZeros(hundredths, 2);
}

int ToInteger(std::wstring_view text) {
    text = TrimLeadingBlanks(text);
    const bool negative = text.starts_with(L"-");
    if (negative || text.starts_with(L"+")) text.remove_prefix(1);
    std::int64_t value = 0;
    for (const wchar_t digit : text) {
        if (digit < L'0' || digit > L'9' || value > std::numeric_limits<int>::max()) break;
        value = value * 10 + (digit - L'0');
    }
    value = std::min<std::int64_t>(value, std::numeric_limits<int>::max());
    return static_cast<int>(negative ? -value : value);
}

}  // namespace win
