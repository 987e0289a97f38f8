// The tab strip: which tab is selected, by click, key or wheel, and which one the pointer is over.
#pragma once

#include "shell/tabs.h"
#include "ui/subclass.h"
#include "win/os_version.h"

#include <vector>

namespace shell {

class TabStrip final : private ui::Subclass::Handler {
public:
    class Listener {
    public:
        // Another tab is selected, or the same once more by the program.
        virtual void tab_selected() = 0;
        // A press on the strip is over: the keys belong to the view.
        virtual void strip_pressed() = 0;
        // The pointer has moved over a tab; null where that has no text, and when the pointer has left.
        virtual void tab_pointed(const wchar_t* hint) = 0;

    protected:
        ~Listener() = default;
    };

    explicit TabStrip(Listener& listener) : listener_(listener) {}

    // Takes the control over and makes the tabs that this Windows has. The control stays the window's.
    void attach(HWND strip, const win::OsVersion& os);

    Tab selected() const;
    // 0-based; runs the tab click.
    void select(int index);
    // One tab on (+1) or back (-1), from the last one to the first.
    void step(int direction);
    // A turn of the wheel in units of WHEEL_DELTA, towards the user negative: ends at the first and the last tab. Fine
    // wheels turn in parts of a notch.
    void wheel(int delta);

    // TCN_SELCHANGE.
    void selection_changed();

    // The height that the strip needs at a width, both in pixels: several rows when the window is narrow. The control
    // is given that width, since only so does it say so.
    int height(int width, int least);
    // The font or the theme has changed.
    void forget_height() { width_ = -1; }

    // What is under the pointer has changed, not the pointer: the next message of a move is none.
    void pointer_rests();

private:
    std::optional<LRESULT> handle(UINT message, WPARAM wparam, LPARAM lparam) override;
    LRESULT press(UINT message, WPARAM wparam, LPARAM lparam);
    void pointer_moved(POINT client);
    void paint() const;
    int selected_index() const;
    int tab_at(POINT client) const;

    Listener& listener_;
    HWND strip_ = nullptr;
    ui::Subclass subclass_;
    std::vector<Tab> tabs_;  // in the order of the strip
    int sought_ = -1;        // the tab under a press, until it is selected
    int wheel_ = 0;
    POINT pointer_ = {-1, -1};  // on the screen, where it last moved or rested
    bool painted_ = false;
    int width_ = -1;  // width and height as last measured
    int height_ = 0;
};

}  // namespace shell
