// A window procedure in front of a window's own one.
#pragma once

#include "win/platform.h"

#include <optional>

namespace ui {

class Subclass {
public:
    class Handler {
    public:
        // Sees a message before the window does. An answer ends it; without one it goes on to the window.
        virtual std::optional<LRESULT> handle(UINT message, WPARAM wparam, LPARAM lparam) = 0;

    protected:
        ~Handler() = default;
    };

    Subclass() = default;
    Subclass(const Subclass&) = delete;
    Subclass& operator=(const Subclass&) = delete;
    ~Subclass() { remove(); }

    // SetWindowLongPtrW with GWLP_WNDPROC. One window at a time; `handler` is borrowed until `remove` or the end of the
    // window.
    void install(HWND window, Handler& handler);
    // Puts the window's own procedure back.
    void remove();

    // Hands a message to the window's own procedure at once, for a handler that has something to do afterwards.
    LRESULT pass_on(UINT message, WPARAM wparam, LPARAM lparam) const;

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

    HWND window_ = nullptr;
    WNDPROC own_ = nullptr;
    Handler* handler_ = nullptr;
    Subclass* next_ = nullptr;  // of all that are installed
};

}  // namespace ui
