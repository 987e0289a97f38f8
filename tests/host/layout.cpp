#include "shell/layout.h"

#include <doctest/doctest.h>

#include <utility>
#include <vector>

using namespace shell;

namespace {

LayoutMetrics MetricsFor(int dpi, int text_height, int wide) {
    const auto scaled = [dpi](int pixels) { return pixels * dpi / 96; };
    LayoutMetrics metrics;
    metrics.dpi = dpi;
    metrics.text_height = scaled(text_height);
    metrics.edit_height = metrics.text_height + scaled(7);
    metrics.button_height = metrics.text_height + scaled(9);
    metrics.button_width = scaled(88 * wide / 10);
    metrics.release_width = scaled(48 * wide / 10);
    metrics.browse_width = scaled(30);
    metrics.caption_width = scaled(56 * wide / 10);
    metrics.memory_caption_width = scaled(62 * wide / 10);
    metrics.memory_value_width = scaled(112 * wide / 10);
    metrics.heading_width = scaled(172 * wide / 10);
    return metrics;
}

struct View {
    DetailKind detail;
    std::vector<Control> shown;
};

std::vector<View> Views() {
    const std::vector<Control> captions = {Control::Label1_0,  Control::Label1_1,  Control::Label1_6,
                                           Control::Label1_2,  Control::Label1_3,  Control::Label1_11,
                                           Control::cmdMenu_0, Control::cmdMenu_1, Control::ListView1_0};
    View information = {DetailKind::None, {}};
    for (Control each = Control::txtSys; each < Control::st; each = Element(each, 1))
        information.shown.push_back(each);
    return {{DetailKind::Values, captions},
            {DetailKind::Comment, {Control::lvService, Control::Label1_0, Control::txtComment}},
            {DetailKind::None, {Control::ListView2}},
            information};
}

bool Overlap(const Rectangle& left, const Rectangle& right) {
    return left.left < right.right() && right.left < left.right() && left.top < right.bottom() &&
           right.top < left.bottom();
}

struct Face {
    int text_height, wide;
};

struct Client {
    int width, height, rows_of_tabs;
};

}  // namespace

TEST_CASE("no control covers another or leaves the window, at every size, resolution and font") {
    for (const int dpi : {96, 120, 144, 192}) {
        for (const Face& face : {Face{12, 10}, {15, 11}, {17, 12}}) {
            const LayoutMetrics metrics = MetricsFor(dpi, face.text_height, face.wide);
            // Client areas of the smallest window, of common ones and of a 4K screen, with one to three rows of tabs.
            for (const Client& client : {Client{464, 258, 3},
                                         {464, 258, 2},
                                         {640, 400, 2},
                                         {784, 494, 1},
                                         {784, 300, 1},
                                         {1904, 1000, 1},
                                         {3824, 2080, 1}}) {
                const Surroundings around = {client.width * dpi / 96, client.height * dpi / 96,
                                             client.rows_of_tabs * (metrics.text_height + 7 * dpi / 96),
                                             metrics.text_height + 8 * dpi / 96};
                for (const View& view : Views()) {
                    CAPTURE(dpi);
                    CAPTURE(face.text_height);
                    CAPTURE(client.width);
                    CAPTURE(client.height);
                    CAPTURE(client.rows_of_tabs);
                    Placement placed = Arrange(metrics, around, view.detail);
                    placed[IndexOf(Control::cb)].height = metrics.edit_height;  // closed
                    std::vector<Control> shown = view.shown;
                    shown.insert(shown.end(), {Control::tb, Control::st});
                    for (std::size_t i = 0; i < shown.size(); ++i) {
                        const Rectangle& own = placed[IndexOf(shown[i])];
                        CAPTURE(static_cast<int>(shown[i]));
                        CHECK(own.left >= 0);
                        CHECK(own.top >= 0);
                        CHECK(own.right() <= around.width);
                        CHECK(own.bottom() <= around.height);
                        for (std::size_t j = 0; j < i; ++j) {
                            CAPTURE(static_cast<int>(shown[j]));
                            CHECK_FALSE(Overlap(own, placed[IndexOf(shown[j])]));
                        }
                    }
                }
            }
        }
    }
}

TEST_CASE("captions and buttons get the room they need, the list the rest") {
    const LayoutMetrics metrics = MetricsFor(96, 12, 10);
    const Placement placed = Arrange(metrics, {464, 258, 57, 20}, DetailKind::Values);
    const auto at = [&placed](Control control) { return placed[IndexOf(control)]; };
    CHECK(at(Control::Label1_0).width == metrics.caption_width);
    CHECK(at(Control::Label1_0).left == at(Control::Label1_6).left);
    CHECK(at(Control::Label1_2).left == at(Control::Label1_11).left);
    CHECK(at(Control::cmdMenu_0).width == metrics.button_width);
    CHECK(at(Control::cmdMenu_0).right() == at(Control::cmdMenu_1).right());
    CHECK(at(Control::ListView1_0).height > 90);
    CHECK(at(Control::ListView1_0).width == 464);

    const Placement information = Arrange(metrics, {464, 258, 57, 20}, DetailKind::None);
    CHECK(information[IndexOf(Control::lblMem_1)].width >= metrics.memory_value_width);
    CHECK(information[IndexOf(Control::Label1_50)].width >= metrics.heading_width);
    CHECK(information[IndexOf(Control::txtMemPath)].width >= 60);
    const auto panel_width = [&metrics](int width) {
        return Arrange(metrics, {width, 900, 20, 20}, DetailKind::None)[IndexOf(Control::cb)].width;
    };
    CHECK(panel_width(780) == 200);
    CHECK(panel_width(1280) == 317);
    CHECK(panel_width(3000) == 400);
}

TEST_CASE("the box of comments has room for the longest one, as far as a quarter of the window goes") {
    const LayoutMetrics metrics = MetricsFor(96, 12, 10);
    const auto box_height = [&metrics](std::vector<Paragraphs> comments, int width = 784, int height = 900) {
        const Surroundings around = {width, height, 20, 20, comments};
        return Arrange(metrics, around, DetailKind::Comment)[IndexOf(Control::txtComment)].height;
    };
    const int usual = box_height({});
    CHECK(usual == box_height({{100}, {0}, {600, 50}}));
    CHECK(box_height({{100}, {600, 0, 600, 600, 600, 600}}) == 6 * 12 + 8);
    CHECK(box_height({{600, 600, 600, 600, 600, 600}}, 464) > 10 * 12);  // each goes on in a second line
    CHECK(box_height({{60000}}) == (900 - 40) / 4 - 12);
    CHECK(box_height({{60000}}, 784, 260) == usual);
}
