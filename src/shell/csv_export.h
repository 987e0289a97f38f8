// The shown list as a CSV file.
#pragma once

#include "ui/host.h"
#include "ui/list_view.h"

#include <string>
#include <string_view>

namespace shell {

// The list in its present order, in the system's ANSI code page, lines ended by CR LF: the headers without quotes, then
// a line for each row. The first cell always stands in quotes, another one where it is no number. Quotes inside a cell
// are not doubled: other programs of the users have learned to read it that way.
std::string CsvOf(const ui::ListView& list, ui::Host& host);

// Whether the automation library takes the text for a number in the user's locale (VarR8FromStr).
bool IsNumeric(const std::wstring& text);

// Writes the file whole or not at all: under another name beside it first, then moved over it. False on failure; an
// old file then stays as it was.
bool WriteWholeFile(const std::wstring& path, std::string_view bytes);

}  // namespace shell
