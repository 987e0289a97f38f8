// A window of the program's size with nothing in it, and the program's timer: what memory and idle processor time are
// measured against.
#include "tools/memory_monitor.h"
#include "win/platform.h"

namespace {

LRESULT CALLBACK EmptyProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcW(window, message, wide, parameter);
}

}  // namespace

int wmain() {
    WNDCLASSW description = {};
    description.lpfnWndProc = &EmptyProcedure;
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    description.lpszClassName = L"Qorvenix.Empty";
    RegisterClassW(&description);
    const HWND window = CreateWindowExW(0, description.lpszClassName, L"Empty", WS_OVERLAPPEDWINDOW, 0, 0, 800, 533,
                                        nullptr, nullptr, nullptr, nullptr);
    SetTimer(window, 1, tools::kTickInterval, nullptr);
    ShowWindow(window, SW_SHOWNORMAL);
    UpdateWindow(window);
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}
