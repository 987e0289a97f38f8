// One tool-tip window for all controls of a window.
#pragma once

#include "win/platform.h"

#include <string_view>

namespace ui {

class Tooltips {
public:
    // The tip window belongs to `owner` and ends with it.
    void create(HWND owner, int dpi);
    void set_font(HFONT font) const;

    // The text shown while the pointer rests over `control`; empty for none. Nothing before `create`.
    void set(HWND control, std::wstring_view text) const;

private:
    HWND owner_ = nullptr;
    HWND window_ = nullptr;
};

}  // namespace ui
