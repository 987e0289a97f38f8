// Contents of setting.ini as a stranger, a broken disk or another program may leave them.
#pragma once

#include "support/hostile.h"

#include "win/platform.h"

#include <string>

namespace hostile {

// What the program keeps there, apart from the column widths.
inline constexpr const char* kSettingKeys[] = {"X",    "Y",      "W",      "H",   "WinState",
                                               "Icon", "Stripe", "SysCom", "Mem", "Font"};

inline constexpr const char* kSettingValues[] = {
    "",           "0",
    "-1",         "1",
    "2",          "12000",
    "2147483647", "-2147483648",
    "4294967295", "99999999999",
    "0x7FFFFFFF", "1e9",
    "\"1\"",      "\"",
    "'",          "\x83\x5C",
    "\xFF\xFE",   "a\tb",
    "MS Gothic",  "\x82\x6C\x82\x72 \x83\x53\x83\x56\x83\x62\x83\x4E",  // that font's Japanese name
};

inline std::string SettingsContent(Source& source) {
    std::string content = "[Other]\r\nKeep=1\r\n[Morlet]\r\nMine=by hand\r\n";
    for (std::size_t lines = source.below(30); lines > 0; --lines) {
        std::string key = source.pick(kSettingKeys);
        if (source.once_in(2))
            key = std::string(1, static_cast<char>('0' + source.below(10))) + "Col" +
                  static_cast<char>('0' + source.below(5));
        content += key + "=" + (source.once_in(20) ? std::string(source.size(), 'x') : source.pick(kSettingValues));
        content += source.once_in(12) ? "\n" : "\r\n";
    }
    if (source.once_in(3)) {
        while (!source.once_in(6))
            source.mutate(content);
    }
    return content;
}

// The lines that are none of the program's business, as Windows reads them.
inline std::string StrangersLines(const std::wstring& file) {
    std::string all;
    for (const auto& [section, key] : {std::pair(L"Other", L"Keep"), std::pair(L"Morlet", L"Mine")}) {
        wchar_t value[64] = {};
        GetPrivateProfileStringW(section, key, L"?", value, 64, file.c_str());
        for (const wchar_t* each = value; *each; ++each)
            all += static_cast<char>(*each);
        all += ';';
    }
    return all;
}

}  // namespace hostile
