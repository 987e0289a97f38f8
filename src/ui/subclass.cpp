#include "ui/subclass.h"

namespace ui {
namespace {

// All that are installed, a handful. The windows' own data stays theirs; the program has one thread.
Subclass* first = nullptr;

}  // namespace

void Subclass::install(HWND window, Handler& handler) {
    remove();
    if (!window) return;
    window_ = window;
    handler_ = &handler;
    next_ = first;
    first = this;
    own_ = reinterpret_cast<WNDPROC>(SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
}

void Subclass::remove() {
    if (!window_) return;
    SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(own_));
    for (Subclass** each = &first; *each; each = &(*each)->next_) {
        if (*each != this) continue;
        *each = next_;
        break;
    }
    window_ = nullptr;
}

LRESULT Subclass::pass_on(UINT message, WPARAM wparam, LPARAM lparam) const {
    return CallWindowProcW(own_, window_, message, wparam, lparam);
}

LRESULT CALLBACK Subclass::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    Subclass* each = first;
    while (each && each->window_ != window)
        each = each->next_;
    if (!each) return DefWindowProcW(window, message, wparam, lparam);
    const WNDPROC own = each->own_;
    if (message == WM_NCDESTROY) {
        each->remove();
    } else if (const auto answer = each->handler_->handle(message, wparam, lparam)) {
        return *answer;
    }
    return CallWindowProcW(own, window, message, wparam, lparam);
}

}  // namespace ui
