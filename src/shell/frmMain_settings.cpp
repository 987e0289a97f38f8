// What setting.ini keeps from one run to the next.
#include "shell/frmMain.h"

#include "ui/control.h"

#include <algorithm>

namespace shell {
namespace {

enum WindowState { kNormal = 0, kMinimised = 1, kMaximised = 2 };

// The window's size before one is stored, in twips.
constexpr int kDesignedWidth = 12000;
constexpr int kDesignedHeight = 8000;

constexpr int kFarthest = 32767;  // pixels; window coordinates end there

struct StoredColumns {
    Control list;
    int suffix;
    int count;
};

constexpr StoredColumns kStoredColumns[] = {
    {Control::ListView1_0, 0, 7},
    {Control::ListView1_1, 1, 7},
    {Control::lvStartUp, 2, 4},
    {Control::lvService, 3, 5},
};

// A window that would lie on no monitor at all is moved onto the nearest one.
void KeepOnMonitor(Rectangle& place) {
    const RECT edges = {place.left, place.top, place.right(), place.bottom()};
    if (MonitorFromRect(&edges, MONITOR_DEFAULTTONULL)) return;
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoW(MonitorFromRect(&edges, MONITOR_DEFAULTTONEAREST), &monitor)) return;
    const RECT& work = monitor.rcWork;
    place.left = std::clamp<int>(place.left, work.left, std::max<int>(work.left, work.right - place.width));
    place.top = std::clamp<int>(place.top, work.top, std::max<int>(work.top, work.bottom - place.height));
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
    if (control(Control::txtMemPath)) settings_.write(kMemoryReleaseKey, ui::TextOf(control(Control::txtMemPath)));
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
Rectangle frmMain::stored_place() const {
    const bool stored = stored_show_command() == SW_SHOWNORMAL;
    const auto pixels = [&](const char* key, int missing, int least) {
        return std::clamp(PixelsFromTwips(stored ? settings_.number(key, missing) : missing, dpi_), least, kFarthest);
    };
    Rectangle place;
    place.left = pixels(kLeftKey, 0, -kFarthest);
    place.top = pixels(kTopKey, 0, -kFarthest);
    place.width = pixels(kWidthKey, kDesignedWidth, scaled(kLeastWidth));
    place.height = pixels(kHeightKey, kDesignedHeight, scaled(kLeastHeight));
    KeepOnMonitor(place);
    return place;
}

void frmMain::save_window() const {
    const int state = IsIconic(window_) ? kMinimised : IsZoomed(window_) ? kMaximised : kNormal;
    settings_.write(kWindowStateKey, state);
    if (state != kNormal) return;
    RECT place = {};
    GetWindowRect(window_, &place);
    settings_.write(kLeftKey, TwipsFromPixels(place.left, dpi_));
    settings_.write(kTopKey, TwipsFromPixels(place.top, dpi_));
    settings_.write(kHeightKey, TwipsFromPixels(place.bottom - place.top, dpi_));
    settings_.write(kWidthKey, TwipsFromPixels(place.right - place.left, dpi_));
}

win::BackupFolder frmMain::backup_option() const {
    return settings_.text(kBackupKey) == L"0" ? win::BackupFolder() : win::BackupFolder(application_folder_);
}

void frmMain::restore_column_widths(Moment moment) const {
    for (const StoredColumns& stored : kStoredColumns) {
        if (MomentOf(RowOf(stored.list)) != moment) continue;
        const ui::ListView view = list(stored.list);
        for (int column = 0; column < stored.count; ++column) {
            const int designed = view.column_width(column);
            const int width = settings_.number(ColumnKey(column + 1, stored.suffix), designed);
            if (width != designed) view.set_column_width(column, width);
        }
    }
}

void frmMain::save_column_widths() const {
    for (const StoredColumns& stored : kStoredColumns) {
        if (!control(stored.list)) continue;
        for (int column = 0; column < stored.count; ++column) {
            settings_.write(ColumnKey(column + 1, stored.suffix), list(stored.list).column_width(column));
        }
    }
}

void frmMain::save_everything() const {
    if (settings_restored_) {
        save_window();
        save_column_widths();
    }
    save_view_options();
}

// The face changes; size and style stay. What Windows makes of a face that it does not have stands.
void frmMain::read_font_option() {
    const std::wstring face = settings_.text(kFontKey);
    if (face.empty()) return;
    LOGFONTW look = {};
    GetObjectW(font_.get(), sizeof look, &look);
    lstrcpynW(look.lfFaceName, face.c_str(), LF_FACESIZE);
    configured_font_.reset(CreateFontIndirectW(&look));
    for (const ControlRow& row : AllControls())
        set_font(row);
    measure();
}

}  // namespace shell
