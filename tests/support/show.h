// How doctest prints wide text.
#pragma once

#include "throw_away.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

namespace doctest {

template <>
struct StringMaker<std::wstring> {
    static String convert(const std::wstring& text) { return ("\"" + throw_away::Utf8(text) + "\"").c_str(); }
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
