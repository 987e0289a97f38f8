// Which control has the keys.
#pragma once

#include "win/platform.h"

namespace shell {

class Focus {
public:
    // `window` owns the controls, `strip` takes the keys where the view is hidden.
    void begin(HWND window, HWND strip);
    // The list or box that the tab shows.
    void set_view(HWND view) { view_ = view; }

    void to_view();
    // The view is to have the keys when what runs has ended: it may be hidden until then.
    void want_view() { view_wanted_ = true; }
    void give_wanted();

    // One step of the Tab key.
    void walk(bool back) const;
    // The window is left, or comes back and has got the keys itself, where they would go nowhere. `working`: the view
    // may still be hidden.
    void window_left();
    void window_entered(bool working);
    // A control that has just been hidden must not keep the keys.
    void leave_hidden();

private:
    HWND window_ = nullptr;
    HWND strip_ = nullptr;
    HWND view_ = nullptr;
    HWND last_ = nullptr;
    bool view_wanted_ = false;
};

}  // namespace shell
