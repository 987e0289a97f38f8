// Contents of setting.ini as a stranger, a broken disk or another program may leave them.
#pragma once

#include "support/hostile.h"

#include "win/platform.h"

namespace hostile {

// What the program keeps there, apart from the column widths.
inline constexpr const char* kSettingKeys[] = {"X",    "Y",      "W",      "H",   "WinState",
                                               "Icon", "Stripe", "SysCom", "Mem", "Font"};

inline std::string SettingsContent(Source& source) {
    // The last is the Japanese name of the face before it.
    constexpr const char* values[] = {
        "",           "0",          "-1",          "1",          "2",
        "12000",      "2147483647", "-2147483648", "4294967295", "99999999999",
        "0x7FFFFFFF", "1e9",        "\"1\"",       "\"",         "'",
        "\x83\x5C",   "\xFF\xFE",   "a\tb",        "MS Gothic",  "\x82\x6C\x82\x72 \x83\x53\x83\x56\x83\x62\x83\x4E"};
    std::string content = "[Other]\r\nKeep=1\r\n[Morlet]\r\nMine=by hand\r\n";
    for (std::size_t lines = source.below(30); lines > 0; --lines) {
        std::string key = source.pick(kSettingKeys);
        if (source.once_in(2)) key = std::to_string(source.below(10)) + "Col" + std::to_string(source.below(5));
        content += key + "=" + (source.once_in(20) ? std::string(source.size(), 'x') : source.pick(values));
        content += source.once_in(12) ? "\n" : "\r\n";
    }
    for (std::size_t changes = source.once_in(3) ? source.below(12) : 0; changes > 0; --changes)
        source.mutate(content);
    return content;
}

// The lines that are none of the program's business, as Windows reads them.
inline std::wstring StrangersLines(const std::wstring& file) {
    wchar_t values[2][64] = {};
    GetPrivateProfileStringW(L"Other", L"Keep", L"?", values[0], 64, file.c_str());
    GetPrivateProfileStringW(L"Morlet", L"Mine", L"?", values[1], 64, file.c_str());
    return std::wstring(values[0]) + L";" + values[1];
}

}  // namespace hostile
