#include "shell/layout.h"

#include "ui/contrast.h"

#include <doctest/doctest.h>

using namespace shell;

namespace {

// Of a font so many percent of the designed one.
LayoutMetrics MetricsFor(int dpi, int percent) {
    LayoutMetrics metrics = {.dpi = dpi, .scale = dpi};
    for (int* each : {&metrics.text_height, &metrics.edit_height, &metrics.button_width, &metrics.button_height,
                      &metrics.release_width, &metrics.browse_width, &metrics.caption_width,
                      &metrics.memory_caption_width, &metrics.memory_value_width, &metrics.heading_width})
        *each = *each * dpi / 96 * percent / 100;
    return metrics;
}

bool Overlap(const Rectangle& left, const Rectangle& right) {
    return left.left < right.right() && right.left < left.right() && left.top < right.bottom() &&
           right.top < left.bottom();
}

// Every control lies in the window and beside those before it.
void CheckApart(const Placement& placed, std::vector<Control> shown, const Surroundings& around) {
    shown.insert(shown.end(), {Control::tb, Control::st});
    for (std::size_t i = 0; i < shown.size(); ++i) {
        const Rectangle& own = placed[IndexOf(shown[i])];
        CAPTURE(static_cast<int>(shown[i]));
        CHECK((own.left >= 0 && own.top >= 0 && own.right() <= around.width && own.bottom() <= around.height));
        for (std::size_t j = 0; j < i; ++j)
            CHECK_FALSE(Overlap(own, placed[IndexOf(shown[j])]));
    }
}

// What the three kinds of view show, in a client area of designed pixels with so many rows of tabs.
void CheckViews(const LayoutMetrics& metrics, int width, int height, int rows_of_tabs) {
    const Surroundings around = {width * metrics.text_height / 12, height * metrics.text_height / 12,
                                 rows_of_tabs * metrics.edit_height, metrics.edit_height};
    Placement placed = Arrange(metrics, around, DetailKind::Values);
    const auto at = [&placed](Control control) { return placed[IndexOf(control)]; };
    CheckApart(placed,
               {Control::ListView1_0, Control::Label1_0, Control::Label1_1, Control::Label1_6, Control::Label1_2,
                Control::Label1_3, Control::Label1_11, Control::cmdMenu_0, Control::cmdMenu_1},
               around);
    CHECK(at(Control::Label1_0).width >= metrics.caption_width);
    CHECK(at(Control::cmdMenu_0).width >= metrics.button_width);
    CHECK(at(Control::ListView1_0).height >= 4 * metrics.text_height);
    placed = Arrange(metrics, around, DetailKind::Comment);
    CheckApart(placed, {Control::lvService, Control::Label1_0, Control::txtComment}, around);
    placed = Arrange(metrics, around, DetailKind::None);
    CheckApart(placed, {Control::ListView2}, around);
    placed[IndexOf(Control::cb)].height = metrics.edit_height;  // closed
    std::vector<Control> information;
    for (Control each = Control::txtSys; each < Control::st; each = Element(each, 1))
        information.push_back(each);
    CheckApart(placed, information, around);
    CHECK(at(Control::lblMem_1).width >= metrics.memory_value_width);
    CHECK(at(Control::txtMemPath).width >= 40 * metrics.dpi / 96);
    CHECK(at(Control::txtSys).width >= around.width / 3);
}

}  // namespace

TEST_CASE("no control covers another or leaves the window, and each has its room, at every size, resolution and font") {
    for (const int dpi : {96, 120, 192}) {
        for (const int percent : {100, 125, 150}) {
            CAPTURE(dpi);
            CAPTURE(percent);
            const LayoutMetrics metrics = MetricsFor(dpi, percent);
            // The smallest window, common ones and a 4K screen.
            CheckViews(metrics, 464, 258, 3);
            CheckViews(metrics, 784, 300, 1);
            CheckViews(metrics, 1904, 1000, 1);
            CheckViews(metrics, 3824, 2080, 1);
        }
    }
}

TEST_CASE("the contrast of colours is that of the guidelines, whichever is the text") {
    CHECK(ui::ContrastRatio(0xFF0000, 0xFFFFFF) == doctest::Approx(8.592).epsilon(0.001));
    CHECK(ui::ContrastRatio(0x767676, 0xFFFFFF) >= ui::kReadableText);
    CHECK(ui::ContrastRatio(0x767676, 0xFFF0F0) < ui::kReadableText);
}
