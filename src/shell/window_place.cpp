#include "shell/window_place.h"

#include <algorithm>

namespace shell {
namespace {

enum WindowState { kNormal = 0, kMinimised = 1, kMaximised = 2 };

// The window's size before one is stored, in twips.
constexpr int kDesignedWidth = 12000;
constexpr int kDesignedHeight = 8000;

constexpr int kFarthest = 32767;  // pixels; window coordinates end there

}  // namespace

int StoredShowCommand(const Settings& settings) {
    switch (settings.number(kWindowStateKey, kNormal)) {
        case kMinimised:
            return SW_SHOWMINIMIZED;
        case kMaximised:
            return SW_SHOWMAXIMIZED;
        default:
            return SW_SHOWNORMAL;
    }
}

POINT LeastSize(const LayoutMetrics& metrics) {
    return {std::min(MulDiv(kLeastWidth, metrics.scale, 96), GetSystemMetrics(SM_CXSCREEN)),
            std::min(MulDiv(kLeastHeight, metrics.scale, 96), GetSystemMetrics(SM_CYSCREEN))};
}

Rectangle StoredBounds(const Settings& settings, const LayoutMetrics& metrics) {
    const POINT smallest = LeastSize(metrics);
    const bool stored = StoredShowCommand(settings) == SW_SHOWNORMAL;
    const auto pixels = [&](const char* key, int missing, int least) {
        return std::clamp(PixelsFromTwips(stored ? settings.number(key, missing) : missing, metrics.dpi), least,
                          kFarthest);
    };
    Rectangle bounds;
    bounds.left = pixels(kLeftKey, 0, -kFarthest);
    bounds.top = pixels(kTopKey, 0, -kFarthest);
    bounds.width = pixels(kWidthKey, kDesignedWidth, smallest.x);
    bounds.height = pixels(kHeightKey, kDesignedHeight, smallest.y);
    return bounds;
}

void KeepOnMonitor(HWND window) {
    RECT bounds = {};
    GetWindowRect(window, &bounds);
    if (MonitorFromRect(&bounds, MONITOR_DEFAULTTONULL)) return;
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromRect(&bounds, MONITOR_DEFAULTTONEAREST), &monitor)) return;
    const RECT& work = monitor.rcWork;
    const LONG width = bounds.right - bounds.left;
    const LONG height = bounds.bottom - bounds.top;
    SetWindowPos(window, nullptr, std::clamp(bounds.left, work.left, std::max(work.left, work.right - width)),
                 std::clamp(bounds.top, work.top, std::max(work.top, work.bottom - height)), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void SaveWindow(HWND window, const Settings& settings, int dpi) {
    const int state = IsIconic(window) ? kMinimised : IsZoomed(window) ? kMaximised : kNormal;
    settings.write(kWindowStateKey, state);
    if (state != kNormal) return;
    RECT bounds = {};
    GetWindowRect(window, &bounds);
    settings.write(kLeftKey, TwipsFromPixels(bounds.left, dpi));
    settings.write(kTopKey, TwipsFromPixels(bounds.top, dpi));
    settings.write(kHeightKey, TwipsFromPixels(bounds.bottom - bounds.top, dpi));
    settings.write(kWidthKey, TwipsFromPixels(bounds.right - bounds.left, dpi));
}

}  // namespace shell
