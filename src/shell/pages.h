// All pages, one for each list: what is made of them and which menu and stored widths a list has.
#pragma once

#include "programs/program_page.h"
#include "programs/restore_page.h"
#include "services/service_page.h"
#include "shell/controls.h"
#include "shell/menus.h"
#include "shell/mod_ini.h"
#include "shell/process_page.h"
#include "startup/startup_page.h"
#include "sysinfo/control_panel_page.h"

#include <array>
#include <optional>
#include <span>
#include <string>

namespace shell {

// In setting.ini the widths of the first `count` columns stand under ColumnKey(…, suffix).
struct StoredColumns {
    int suffix = 0;
    int count = 0;
};

struct PageRow {
    Control list;
    std::optional<MenuArray> popup = {};
    StoredColumns columns = {};
};

// In the order of the lists among the controls.
std::span<const PageRow> AllPageRows();

class Pages {
public:
    // What the pages are told of the program is borrowed.
    Pages(const win::OsVersion& os, const programs::ScanOptions& scan_options, const std::wstring& user_sid,
          const win::BackupFolder& backup);
    Pages(const Pages&) = delete;
    Pages& operator=(const Pages&) = delete;

    static constexpr int kCount = 7;
    std::span<ui::Page* const> all() const { return all_; }
    ui::Page& at(int index) const { return *all_[static_cast<std::size_t>(index)]; }
    // Full rows and grid lines for every list that is made.
    void set_list_styles() const;
    // Lists are drawn in memory from now on.
    void buffer() const;

    // The stored widths, of the lists that a phase has made.
    void restore_column_widths(const Settings& settings, CreationPhase phase) const;
    void save_column_widths(const Settings& settings) const;

    ui::Page* of_window(HWND window) const;  // null for a window that is no list
    ui::Page* of(Control list) const;        // null for a control that is no page's list
    int index_of(const ui::Page& page) const;
    static const PageRow& row(int index) { return AllPageRows()[static_cast<std::size_t>(index)]; }

    // The page that the window opens with, whose scan the View menu's items change.
    ui::Page& programs() { return programs_; }
    // The page that is filled once the window is up.
    ui::Page& control_panel() { return control_panel_; }

private:
    programs::ProgramScan scan_;
    programs::ProgramPage programs_{scan_, false};
    programs::ProgramPage updates_{scan_, true};
    sysinfo::ControlPanelPage control_panel_;
    startup::StartupPage startup_;
    services::ServicePage services_;
    ProcessPage processes_;
    programs::RestorePage restore_;
    std::array<ui::Page*, kCount> all_;
};

}  // namespace shell
