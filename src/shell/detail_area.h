// The area under the list: captions, the values of the selected row, the comment box, the two buttons.
#pragma once

#include "shell/control_set.h"
#include "shell/tabs.h"
#include "ui/page.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace shell {

class DetailArea {
public:
    explicit DetailArea(const ControlSet& controls) : controls_(controls) {}

    // Whether a control of the area is there on a tab.
    static bool has(Control which, const TabRow& tab);

    // Empties the area and names the captions for a tab.
    void begin(const TabRow& tab) const;
    // Caption and tool tips of the buttons on a tab; the designed ones stand until the first tab click.
    void name_buttons(const TabRow& tab) const;
    void clear() const;

    // The texts of the value labels from the first one on; the others are emptied. A text that leads somewhere is a
    // link.
    void show_values(std::span<const std::wstring> values) const;
    void show_comment(std::wstring_view text) const;
    // Measures what the comment box may show of a page, so that it has room for all of that. False where that has not
    // changed.
    bool measure(const ui::Page& page);
    std::span<const Paragraphs> comments() const { return comments_; }

private:
    void set_value(Control label, std::wstring_view text) const;

    const ControlSet& controls_;
    std::vector<Paragraphs> comments_;
};

}  // namespace shell
