// What setting.ini keeps from one run to the next.
#include "shell/frmMain.h"
#include "shell/window_place.h"

namespace shell {
void frmMain::load_view_options() {
    scan_options_.show_icons = settings_.number(kIconKey, 0) != 0;
    stripes_.shown = settings_.number(kStripeKey, 0) != 0;
    scan_options_.show_system_components = settings_.number(kSystemComponentsKey, 0) != 0;
    check_view_items();
}

void frmMain::save_view_options() const {
    const auto write_check = [this](std::string_view key, bool checked) { settings_.write(key, checked ? -1 : 0); };
    if (control(Control::txtMemPath)) settings_.write(kMemoryReleaseKey, panel_.release_program());
    write_check(kIconKey, scan_options_.show_icons);
    write_check(kStripeKey, stripes_.shown);
    write_check(kSystemComponentsKey, scan_options_.show_system_components);
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
    if (loaded_) SaveWindow(window_, settings_, dpi_);
    if (settings_restored_) save_column_widths();
    save_view_options();
}

}  // namespace shell
