// A window of the program's size with nothing in it but a clock in its title, from the program's timer: what memory and
// idle processor time are measured against.
#include "shown_window.h"

#include "tools/memory_monitor.h"

namespace {

// Once a second. The text is as long as the program's.
void ShowClock(HWND window) {
    static WORD shown = 60;
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    if (now.wSecond == shown) return;
    shown = now.wSecond;
    wchar_t title[64];
    wsprintfW(title, L"Qorvenix     %04d(令和%d)/%02d/%02d (%c) %02d:%02d:%02d", now.wYear, now.wYear - 2018,
              now.wMonth, now.wDay, L"日月火水木金土"[now.wDayOfWeek], now.wHour, now.wMinute, now.wSecond);
    SetWindowTextW(window, title);
}

LRESULT CALLBACK EmptyProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
    if (message == WM_TIMER) ShowClock(window);
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
    bench::ShowUntilClosed(window);
    return 0;
}
