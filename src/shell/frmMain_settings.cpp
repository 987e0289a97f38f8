// What setting.ini keeps from one run to the next.
#include "shell/frmMain.h"

#include <algorithm>

namespace shell {
namespace {

enum WindowState { kNormal = 0, kMinimised = 1, kMaximised = 2 };

// The window's size before one is stored, in twips.
constexpr int kDesignedWidth = 12000;
constexpr int kDesignedHeight = 8000;

constexpr int kFarthest = 32767;  // pixels; window coordinates end there

// A window of which nothing would be seen is moved onto the nearest monitor.
void KeepOnMonitor(RECT& bounds) {
    if (MonitorFromRect(&bounds, MONITOR_DEFAULTTONULL)) return;
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromRect(&bounds, MONITOR_DEFAULTTONEAREST), &monitor)) return;
    const RECT& work = monitor.rcWork;
    const LONG width = bounds.right - bounds.left;
    const LONG height = bounds.bottom - bounds.top;
    const LONG left = std::clamp(bounds.left, work.left, std::max(work.left, work.right - width));
    const LONG top = std::clamp(bounds.top, work.top, std::max(work.top, work.bottom - height));
    bounds = {left, top, left + width, top + height};
}

}  // namespace

void frmMain::load_view_options() {
    scan_options_.show_icons = settings_.number(kIconKey, 0) != 0;
    stripes_ = settings_.number(kStripeKey, 0) != 0;
    scan_options_.show_system_components = settings_.number(kSystemComponentsKey, 0) != 0;
    check_view_items();
}

void frmMain::save_view_options() const {
    const auto write_check = [this](std::string_view key, bool checked) { settings_.write(key, checked ? -1 : 0); };
    if (control(Control::txtMemPath)) settings_.write(kMemoryReleaseKey, panel_.release_program());
    write_check(kIconKey, scan_options_.show_icons);
    write_check(kStripeKey, stripes_);
    write_check(kSystemComponentsKey, scan_options_.show_system_components);
}

// The stored state is applied as it is: a program closed while minimised starts minimised.
int frmMain::stored_show_command() const {
    switch (settings_.number(kWindowStateKey, kNormal)) {
        case kMinimised:
            return SW_SHOWMINIMIZED;
        case kMaximised:
            return SW_SHOWMAXIMIZED;
        default:
            return SW_SHOWNORMAL;
    }
}

// Of the window in its normal state. Windows asks for the least size only of a window that exists already.
Rectangle frmMain::stored_bounds() const {
    const bool stored = stored_show_command() == SW_SHOWNORMAL;
    const auto pixels = [&](const char* key, int missing, int least) {
        return std::clamp(PixelsFromTwips(stored ? settings_.number(key, missing) : missing, dpi_), least, kFarthest);
    };
    Rectangle bounds;
    bounds.left = pixels(kLeftKey, 0, -kFarthest);
    bounds.top = pixels(kTopKey, 0, -kFarthest);
    bounds.width = pixels(kWidthKey, kDesignedWidth, MulDiv(kLeastWidth, dpi_, 96));
    bounds.height = pixels(kHeightKey, kDesignedHeight, MulDiv(kLeastHeight, dpi_, 96));
    return bounds;
}

// Judged by what Windows has made of the stored size.
void frmMain::keep_on_monitor() const {
    RECT bounds = {};
    GetWindowRect(window_, &bounds);
    const RECT before = bounds;
    KeepOnMonitor(bounds);
    if (bounds.left != before.left || bounds.top != before.top) {
        SetWindowPos(window_, nullptr, bounds.left, bounds.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void frmMain::save_window() const {
    const int state = IsIconic(window_) ? kMinimised : IsZoomed(window_) ? kMaximised : kNormal;
    settings_.write(kWindowStateKey, state);
    if (state != kNormal) return;
    RECT bounds = {};
    GetWindowRect(window_, &bounds);
    settings_.write(kLeftKey, TwipsFromPixels(bounds.left, dpi_));
    settings_.write(kTopKey, TwipsFromPixels(bounds.top, dpi_));
    settings_.write(kHeightKey, TwipsFromPixels(bounds.bottom - bounds.top, dpi_));
    settings_.write(kWidthKey, TwipsFromPixels(bounds.right - bounds.left, dpi_));
}

void frmMain::restore_column_widths(CreationPhase phase) const {
    for (const PageRow& row : AllPageRows()) {
        if (PhaseOf(RowOf(row.list)) != phase) continue;
        const ui::ListView& list = pages_.of(row.list)->list();
        for (int column = 0; column < row.columns.count; ++column) {
            const int designed = list.column_width(column);
            const int width = settings_.number(ColumnKey(column + 1, row.columns.suffix), designed);
            if (width != designed) list.set_column_width(column, width);
        }
    }
}

void frmMain::save_column_widths() const {
    for (const PageRow& row : AllPageRows()) {
        if (!control(row.list)) continue;
        for (int column = 0; column < row.columns.count; ++column) {
            settings_.write(ColumnKey(column + 1, row.columns.suffix),
                            pages_.of(row.list)->list().column_width(column));
        }
    }
}

// What was never shown is not the user's: geometry and widths then stay as they were stored.
void frmMain::save_everything() const {
    if (loaded_) save_window();
    if (settings_restored_) save_column_widths();
    save_view_options();
}

}  // namespace shell
