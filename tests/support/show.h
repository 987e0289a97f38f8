// How doctest prints wide text.
#pragma once

#include "win/platform.h"

#include <doctest/doctest.h>

#include <string>

namespace doctest {

template <>
struct StringMaker<std::wstring> {
    static String convert(const std::wstring& text) {
        const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0,
                                             nullptr, nullptr);
        std::string utf8(static_cast<std::size_t>(size), '\0');
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(), size, nullptr,
                            nullptr);
        return ("\"" + utf8 + "\"").c_str();
    }
};

}  // namespace doctest
