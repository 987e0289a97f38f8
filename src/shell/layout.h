// Where every control goes. Pure arithmetic on pixels: nothing is asked of Windows here.
#pragma once

#include "shell/controls.h"

#include <array>
#include <span>
#include <vector>

namespace shell {

// The smallest window, pixels as designed: at 96 dpi with the font of which an ideograph is 12 pixels wide.
inline constexpr int kLeastWidth = 480;
inline constexpr int kLeastHeight = 320;

// What the fonts and the resolution dictate, in pixels, measured once for a font.
struct LayoutMetrics {
    int dpi = 96;
    int scale = 96;         // how wide 96 designed pixels are, at this resolution and with this font
    int text_height = 12;   // one line of a label
    int edit_height = 18;   // a one-line text box
    int button_width = 80;  // the widest of the two detail buttons
    int button_height = 22;
    int release_width = 50;  // the button "開放"
    int browse_width = 24;   // the button "..."
    int caption_width = 60;  // the widest caption of the detail area
    int memory_caption_width = 70;
    int memory_value_width = 110;
    int heading_width = 180;  // the widest heading of the information panel
};

struct Rectangle {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    int right() const { return left + width; }
    int bottom() const { return top + height; }
    bool operator==(const Rectangle&) const = default;
};

// The widths of a text's paragraphs in pixels.
using Paragraphs = std::vector<int>;

struct Surroundings {
    int width = 0;  // of the window's client area
    int height = 0;
    int strip_height = 0;  // of the tab strip with all its rows
    int status_height = 0;
    std::span<const Paragraphs> comments = {};  // that the comment box may show
};

// What is under the list.
enum class DetailKind {
    None,
    Values,   // captions, their values, buttons
    Buttons,  // buttons alone
    Comment,  // one caption and the text box
};

using Placement = std::array<Rectangle, kControlCount>;

// The rectangles of all controls, those of the present tab and those of the other ones. Sizes are never negative.
Placement Arrange(const LayoutMetrics& metrics, const Surroundings& surroundings, DetailKind detail);

}  // namespace shell
