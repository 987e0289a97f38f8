#include "shell/detail_area.h"

#include "programs/detail_link.h"
#include "ui/control.h"
#include "ui/link_label.h"

#include <iterator>

namespace shell {
namespace {

constexpr Control kCaptions[] = {Control::Label1_0, Control::Label1_1, Control::Label1_6};
constexpr Control kValues[] = {Control::Label1_2, Control::Label1_3, Control::Label1_11};

}  // namespace

bool DetailArea::has(Control which, const TabRow& tab) {
    switch (which) {
        case Control::Label1_0:
        case Control::Label1_6:
            return tab.detail != DetailKind::None;
        case Control::txtComment:
            return tab.detail == DetailKind::Comment;
        case Control::cmdMenu_0:
            return tab.buttons > 0;
        case Control::cmdMenu_1:
            return tab.buttons > 1;
        default:
            return tab.detail == DetailKind::Values;
    }
}

void DetailArea::begin(const TabRow& tab) const {
    for (std::size_t i = 0; i < std::size(kCaptions); ++i) {
        ui::SetText(controls_.at(kCaptions[i]), tab.captions[i]);
    }
    clear();
}

void DetailArea::name_buttons(const TabRow& tab) const {
    const HWND second = controls_.at(Control::cmdMenu_1);
    if (tab.delete_tip) controls_.tips().set(controls_.at(Control::cmdMenu_0), tab.delete_tip);
    ui::SetText(second, tab.second_button.caption);
    controls_.tips().set(second, tab.second_button.tip);
}

void DetailArea::clear() const {
    show_values({});
    show_comment({});
}

void DetailArea::show_values(std::span<const std::wstring> values) const {
    for (std::size_t i = 0; i < std::size(kValues); ++i) {
        set_value(kValues[i], i < values.size() ? std::wstring_view(values[i]) : std::wstring_view());
    }
}

void DetailArea::set_value(Control label, std::wstring_view text) const {
    ui::SetText(controls_.at(label), text);
    controls_.tips().set(controls_.at(label), text);
    ui::SetLink(controls_.at(label), programs::LooksLikeLink(text));
}

void DetailArea::show_comment(std::wstring_view text) const {
    const HWND comment = controls_.at(Control::txtComment);
    if (!comment) return;
    ui::SetText(comment, text);
    ui::FitScrollBar(comment);
}

}  // namespace shell
