#include "win/system_text.h"

#include "support/show.h"

#include <doctest/doctest.h>

TEST_CASE("Text comes back from the system's code page as it was given, or visibly not") {
    for (const wchar_t* text :
         {L"C:\\開放①髙～.exe", L"C:\\caf\u00e9\\rel.bat", L"Foo\u2122", L"\u00c5ngstr\u00f6m", L"\u2075"}) {
        const std::wstring given = text;
        const std::wstring kept = win::FromAnsi(win::ToAnsi(given));
        CHECK((kept == given || kept.find(L'?') != kept.npos));
    }
    CHECK(win::FromAnsi(win::ToAnsi(L"開放①髙～")) == L"開放①髙～");
}
