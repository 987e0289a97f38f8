#include "shell/layout.h"

#include <algorithm>

namespace shell {
namespace {

constexpr int kDetailRows = 3;
constexpr int kMemoryRows = 5;
constexpr int kBoxFrame = 8;      // what a text box leaves free on both sides together, pixels at 96 dpi
constexpr int kDropHeight = 200;  // of the open registry-path box, pixels at 96 dpi

class Arrangement {
public:
    Arrangement(const LayoutMetrics& metrics, const Surroundings& around) : metrics_(metrics), around_(around) {}

    Placement arrange(DetailKind detail) {
        place(Control::tb, 0, 0, around_.width, around_.strip_height);
        place(Control::st, 0, around_.height - around_.status_height, around_.width, around_.status_height);
        const Rectangle content = {0, around_.strip_height, around_.width,
                                   around_.height - around_.strip_height - around_.status_height};
        arrange_lists(content, detail);
        arrange_information(content);
        return placement_;
    }

private:
    int scaled(int pixels) const { return (pixels * metrics_.dpi + 48) / 96; }
    int margin() const { return scaled(6); }
    int gap() const { return scaled(4); }
    int row_height() const { return metrics_.text_height + scaled(3); }

    void place(Control control, int left, int top, int width, int height) {
        placement_[IndexOf(control)] = {left, top, std::max(width, 0), std::max(height, 0)};
    }

    void arrange_lists(const Rectangle& content, DetailKind detail) {
        const int detail_height = detail == DetailKind::None ? 0 : height_of_detail(content, detail);
        const int list_height = content.height - detail_height;
        for (Control list = Control::ListView1_0; list <= Control::lvRestore; list = Element(list, 1)) {
            place(list, content.left, content.top, content.width, list_height);
        }
        arrange_detail({content.left, content.top + list_height, content.width, detail_height}, detail);
    }

    int height_of_detail(const Rectangle& content, DetailKind detail) const {
        const int buttons = 2 * metrics_.button_height + gap();
        int height = std::max(kDetailRows * row_height(), buttons) + 2 * margin();
        // The longest description is read whole, as far as a quarter of the window goes. That all of them get the same
        // room keeps the list still while the selection walks through it.
        if (detail == DetailKind::Comment) {
            const int box_width = content.width - 2 * margin() - metrics_.caption_width - gap();
            const int wanted = lines_of_comments(box_width) * metrics_.text_height + scaled(kBoxFrame) + 2 * margin();
            height = std::max(height, std::min(wanted, content.height / 4));
        }
        return height;
    }

    // Of the longest comment in a box of that width. Lines break at the end of a word or letter, so none is quite full.
    int lines_of_comments(int box_width) const {
        const int line = std::max(box_width - scaled(kBoxFrame) - 2 * metrics_.text_height, 1);
        int most = 0;
        for (const Paragraphs& comment : around_.comments) {
            int lines = 0;
            for (const int width : comment)
                lines += std::max((width + line - 1) / line, 1);
            most = std::max(most, lines);
        }
        return most;
    }

    void arrange_detail(const Rectangle& area, DetailKind detail) {
        const int button_left = area.right() - margin() - metrics_.button_width;
        const int caption_left = area.left + margin();
        const int value_left = caption_left + metrics_.caption_width + gap();
        const int value_right = detail == DetailKind::Comment ? area.right() - margin() : button_left - 2 * margin();
        const int top = area.top + margin();
        constexpr Control captions[] = {Control::Label1_0, Control::Label1_1, Control::Label1_6};
        constexpr Control values[] = {Control::Label1_2, Control::Label1_3, Control::Label1_11};
        const int free_height = area.height - 2 * margin() - kDetailRows * row_height();
        const int pitch = row_height() + (detail == DetailKind::Values ? std::max(free_height, 0) / kDetailRows : 0);
        for (int row = 0; row < kDetailRows; ++row) {
            place(captions[row], caption_left, top + row * pitch, metrics_.caption_width, row_height());
            place(values[row], value_left, top + row * pitch, value_right - value_left, row_height());
        }
        place(Control::txtComment, value_left, top, value_right - value_left, area.height - 2 * margin());
        for (int button = 0; button < 2; ++button) {
            place(Element(Control::cmdMenu_0, button), button_left, top + button * (metrics_.button_height + gap()),
                  metrics_.button_width, metrics_.button_height);
        }
    }

    int field_height() const { return std::max(metrics_.edit_height, metrics_.button_height); }
    int heading_height() const { return row_height() + scaled(2); }

    int height_of_panel() const {
        return kMemoryRows * row_height() + 2 * field_height() + 3 * heading_height() + 2 * 2 * gap();
    }

    // A quarter of the window, but no narrower than its texts want and no wider than twice that.
    int width_of_panel(int available) const {
        const int wanted = std::max(
            {metrics_.memory_caption_width + gap() + metrics_.memory_value_width, metrics_.heading_width, scaled(200)});
        return std::min(std::clamp(available / 4, wanted, 2 * wanted), available / 2);
    }

    // The report on the left, on the right memory figures, release program and registry path one under the other. In a
    // low window the two headings that only decorate are left out, and the registry path moves under the report.
    void arrange_information(const Rectangle& content) {
        const Rectangle inner = {content.left + margin(), content.top + margin(), content.width - 2 * margin(),
                                 content.height - 2 * margin()};
        const int panel_width = width_of_panel(inner.width);
        Rectangle report = {inner.left, inner.top, inner.width - panel_width - 2 * margin(), inner.height};
        const Rectangle panel = {inner.right() - panel_width, inner.top, panel_width, inner.height};
        const bool low = height_of_panel() > panel.height;
        const int section_gap = 2 * gap() + (low ? 0 : std::min((panel.height - height_of_panel()) / 2, 2 * margin()));

        int top = panel.top;
        if (!low) top = heading(Control::lblMemory, Control::lineMemory, panel, top);
        top = arrange_memory(panel, top) + (low ? gap() : section_gap);
        if (!low) top = heading(Control::lblRelease, Control::lineRelease, panel, top);
        top = arrange_release(panel, top) + section_gap;
        if (low) {
            report.height -= heading_height() + field_height() + gap();
            arrange_registry(report, report.bottom() + gap());
        } else {
            arrange_registry(panel, top);
        }
        place(Control::lblReport, report.left, report.top, 0, 0);
        place(Control::txtSys, report.left, report.top, report.width, report.height);
    }

    // Each of these returns the top of what follows.
    int heading(Control label, Control line, const Rectangle& column, int top) {
        const int width = std::min(label == Control::lblMemory ? metrics_.memory_caption_width : metrics_.heading_width,
                                   column.width);
        const int line_left = column.left + width + gap();
        place(label, column.left, top, width, row_height());
        place(line, line_left, top + row_height() / 2, column.right() - line_left, scaled(2));
        return top + heading_height();
    }

    int arrange_memory(const Rectangle& column, int top) {
        const int caption_width = std::min(metrics_.memory_caption_width, column.width / 2);
        const int value_left = column.left + caption_width + gap();
        for (int row = 0; row < kMemoryRows; ++row, top += row_height()) {
            place(Element(Control::lblMemCaption_0, row, 2), column.left, top, caption_width, row_height());
            place(Element(Control::lblMem_0, row, 2), value_left, top, column.right() - value_left, row_height());
        }
        return top;
    }

    int arrange_release(const Rectangle& column, int top) {
        const int release_left = column.right() - metrics_.release_width;
        const int browse_left = release_left - gap() - metrics_.browse_width;
        place(Control::txtMemPath, column.left, top + (field_height() - metrics_.edit_height) / 2,
              browse_left - gap() - column.left, metrics_.edit_height);
        place(Control::cmdSys_1, browse_left, top, metrics_.browse_width, metrics_.button_height);
        place(Control::cmdSys_0, release_left, top, metrics_.release_width, metrics_.button_height);
        return top + field_height();
    }

    void arrange_registry(const Rectangle& column, int top) {
        top = heading(Control::Label1_50, Control::lineRegistry, column, top);
        place(Control::cb, column.left, top, column.width, scaled(kDropHeight));
    }

    const LayoutMetrics& metrics_;
    const Surroundings& around_;
    Placement placement_ = {};
};

}  // namespace

Placement Arrange(const LayoutMetrics& metrics, const Surroundings& surroundings, DetailKind detail) {
    return Arrangement(metrics, surroundings).arrange(detail);
}

}  // namespace shell
