// What the status bar shows: the text that stands there, covered for a while by a hint.
#pragma once

#include <string>
#include <string_view>

namespace shell {

class StatusLine {
public:
    // A text that stays. It takes the place of a hover hint, which does not come back by itself: whoever has just
    // clicked a tab sees the count and not the tab's description.
    void write(std::wstring_view text) {
        text_ = text;
        hover_.clear();
    }
    // The description of the tab under the pointer; empty when the pointer has left the strip.
    void hover(std::wstring_view hint) { hover_ = hint; }
    // The hint for the menu item that is highlighted; empty when the menu is left.
    void menu(std::wstring_view hint) { menu_ = hint; }

    const std::wstring& shown() const {
        if (!menu_.empty()) return menu_;
        return hover_.empty() ? text_ : hover_;
    }
    const std::wstring& text() const { return text_; }

private:
    std::wstring text_;
    std::wstring hover_;
    std::wstring menu_;
};

}  // namespace shell
