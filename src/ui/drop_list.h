// The list that a combo box opens.
#pragma once

#include "ui/subclass.h"

namespace ui {

class DropList final : private Subclass::Handler {
public:
    // Keeps the open list on the screen: a wide one that would leave it on the right opens further left. The control
    // stays the window's.
    void attach(HWND combo);

    // As wide as the longest line; for CBN_DROPDOWN.
    static void widen(HWND combo);

private:
    std::optional<LRESULT> handle(UINT message, WPARAM wparam, LPARAM lparam) override;

    HWND combo_ = nullptr;
    Subclass subclass_;
};

}  // namespace ui
