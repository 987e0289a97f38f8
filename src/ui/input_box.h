// A dialog that asks for one line of text.
#pragma once

#include "win/platform.h"

#include <optional>
#include <string>
#include <string_view>

namespace ui {

// Shows `prompt` over an empty line in the system's message font, modal to `owner` and in its middle. Enter is OK, Esc
// and closing are Cancel. Nothing on Cancel, and when Windows refuses the dialog.
std::optional<std::wstring> AskText(HWND owner, std::wstring_view prompt, std::wstring_view title);

}  // namespace ui
