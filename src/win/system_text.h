// What the system decides about text: its code page, which the ANSI calls take, and letter case.
#pragma once

#include <string>
#include <string_view>

namespace win {

// UTF-16 to the system's ANSI code page and back. Characters that the page lacks become "?", never a similar one: the
// path of another file might come of that.
std::string ToAnsi(std::wstring_view text);
std::wstring FromAnsi(std::string_view text);

// Whether the code page has every character of the text.
bool FitsAnsi(std::wstring_view text);

// With the environment variables in it expanded ("%TEMP%"), unknown ones left as they stand. The text itself where
// that fails. ExpandEnvironmentStringsW.
std::wstring ExpandVariables(const std::wstring& text);

// Lower case as the user interface compares: CharLowerBuffW, one character to one character.
std::wstring LowerCase(std::wstring_view text);

}  // namespace win
