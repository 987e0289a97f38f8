// The clipboard, as Unicode text.
#pragma once

#include "win/platform.h"

#include <string_view>

namespace ui {

// Empties the clipboard and puts `text` there. False when another program holds the clipboard.
bool CopyText(HWND owner, std::wstring_view text);

}  // namespace ui
