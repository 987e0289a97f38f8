#include "shell/detail_area.h"

#include "programs/detail_link.h"
#include "ui/control.h"
#include "ui/link_label.h"

#include <iterator>
#include <utility>

namespace shell {
namespace {

constexpr Control kCaptions[] = {Control::Label1_0, Control::Label1_1, Control::Label1_6};
constexpr Control kValues[] = {Control::Label1_2, Control::Label1_3, Control::Label1_11};

static_assert(std::size(kCaptions) == std::size(TabRow().captions));

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

bool DetailArea::measure(const ui::Page& page) {
    const std::vector<std::wstring> texts = page.comments();
    if (texts.empty()) return false;
    const HWND box = controls_.at(Control::txtComment);
    std::vector<Paragraphs> comments;
    const win::WindowDc dc(box);
    const win::Selected font(dc.get(), reinterpret_cast<HFONT>(SendMessageW(box, WM_GETFONT, 0, 0)));
    for (const std::wstring& comment : texts) {
        Paragraphs& widths = comments.emplace_back();
        for (std::size_t from = 0, end = 0; end != comment.npos; from = end + 2) {
            end = comment.find(L"\r\n", from);
            const std::wstring_view paragraph = std::wstring_view(comment).substr(from, end - from);
            SIZE size = {};
            GetTextExtentPoint32W(dc.get(), paragraph.data(), static_cast<int>(paragraph.size()), &size);
            widths.push_back(size.cx);
        }
    }
    if (comments == comments_) return false;
    comments_ = std::move(comments);
    return true;
}

}  // namespace shell
