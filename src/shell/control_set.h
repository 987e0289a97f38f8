// The window's controls: made in three phases, given their fonts, measured and put in their places.
#pragma once

#include "shell/controls.h"
#include "shell/layout.h"
#include "ui/drop_list.h"
#include "ui/tooltips.h"
#include "win/handle.h"

#include <array>
#include <string>
#include <string_view>

namespace shell {

class ControlSet {
public:
    // Takes and measures the message font. What is asked before the window is there needs that.
    void begin(int dpi);
    void set_owner(HWND window, HINSTANCE instance);

    // Makes the controls of a phase where `arrange` has put them. Only `view` of the lists is shown.
    void create(CreationPhase phase, Control view);
    // Tool tips, and the order in which the Tab key walks; after the last phase.
    void finish();

    HWND at(Control which) const { return handles_[IndexOf(which)]; }
    const ControlRow* row_of(HWND which) const;  // null for a window that is no control of the table

    // The face changes; size and style stay. What Windows makes of a face that it does not have stands.
    void use_face(const std::wstring& face);
    // The system's message font or metrics have changed.
    void renew_fonts();
    const LayoutMetrics& metrics() const { return metrics_; }
    int scaled(int pixels) const { return MulDiv(pixels, metrics_.dpi, 96); }

    // Places every control, made already or not. The status bar places itself. What is seen changes with `paint`.
    void arrange(const Surroundings& around, DetailKind detail);
    // Whether the controls stand where they belong in a client area of that size.
    bool fill(int width, int height) const;
    // Paints the window's client area and everything in it, now.
    void paint() const;
    // Height of the status bar for the window's present width.
    int status_height() const;

    const ui::Tooltips& tips() const { return tips_; }
    ui::Tooltips& tips() { return tips_; }
    // What a control says of itself (WM_COMMAND), at any time. A box that is only read shows no caret, which would make
    // it look like a field to fill in. The list of a combo box opens as wide as its longest line, under no tip.
    void reported(Control which, int code) const;

private:
    HWND create_control(const ControlRow& row, bool shown) const;
    void set_font(const ControlRow& row) const;
    void make_fonts();
    void measure();
    void create_tips();
    // The tip of a control with everything in it; empty for none.
    void set_tip(Control which, std::wstring_view text) const;
    void put_in_order() const;

    HWND window_ = nullptr;
    HINSTANCE instance_ = nullptr;
    std::array<HWND, kControlCount> handles_ = {};
    ui::Tooltips tips_;
    ui::DropList drop_list_;
    std::wstring face_;          // that the option "Font" names; empty without it
    win::Font font_;             // the system's message font
    win::Font configured_font_;  // the same in that face
    LayoutMetrics metrics_;
    Placement placed_ = {};  // where the controls stand, or will stand when they are made
};

}  // namespace shell
