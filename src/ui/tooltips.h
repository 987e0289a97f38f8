// One tool-tip window for all controls of a window.
#pragma once

#include "win/platform.h"

#include <string>
#include <string_view>

namespace ui {

class Tooltips {
public:
    // The tip window belongs to `owner` and ends with it.
    void create(HWND owner, int dpi);
    void set_font(HFONT font) const;

    // The text shown while the pointer rests over `control`; empty for none. Nothing before `create`.
    void set(HWND control, std::wstring_view text) const;
    // The control's own text, whenever that is cut off. The owner hands its notifications to `answer`.
    void set_whole_text(HWND control) const;
    // WM_NOTIFY from this window; false where it is from another.
    bool answer(LPARAM lparam);
    // While it is false no tip appears, and one that is there goes.
    void enable(bool enabled) const;

private:
    void add(HWND control, wchar_t* text) const;

    HWND owner_ = nullptr;
    HWND window_ = nullptr;
    std::wstring whole_text_;  // that is shown
};

}  // namespace ui
