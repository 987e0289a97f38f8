// How doctest prints wide text.
#pragma once

#include "win/platform.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

namespace doctest {

template <>
struct StringMaker<std::wstring> {
    static String convert(const std::wstring& text) {
        const int size =
            WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
        std::string utf8(static_cast<std::size_t>(size), '\0');
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(), size, nullptr,
                            nullptr);
        return ("\"" + utf8 + "\"").c_str();
    }
};

// Cells of a row, rows of a list.
template <class Element>
struct StringMaker<std::vector<Element>> {
    static String convert(const std::vector<Element>& elements) {
        String text = "{";
        for (const Element& element : elements)
            text += " " + StringMaker<Element>::convert(element);
        return text + " }\n";
    }
};

}  // namespace doctest
