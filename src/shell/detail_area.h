// The area under the list: captions, the values of the selected row, the comment box, the two buttons.
#pragma once

#include "shell/control_set.h"
#include "shell/tabs.h"

#include <span>
#include <string>
#include <string_view>

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

private:
    void set_value(Control label, std::wstring_view text) const;

    const ControlSet& controls_;
};

}  // namespace shell
