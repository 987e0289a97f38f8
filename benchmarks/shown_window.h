// A window of a benchmark's own, from its first painting to its end.
#pragma once

#include "win/platform.h"

namespace bench {

// Shows the window and processes messages until its procedure posts WM_QUIT.
inline void ShowUntilClosed(HWND window) {
    ShowWindow(window, SW_SHOWNORMAL);
    UpdateWindow(window);
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
}

}  // namespace bench
