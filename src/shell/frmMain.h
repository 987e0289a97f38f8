// The program's only window. It owns every control, menu, image list and font, and all state of the user interface;
// the features are handed the list to fill and the Host face of this window.
#pragma once

#include "programs/uninstall_scan.h"
#include "shell/activity.h"
#include "shell/controls.h"
#include "shell/layout.h"
#include "shell/menus.h"
#include "shell/mod_ini.h"
#include "shell/status_line.h"
#include "shell/tabs.h"
#include "startup/startup_menu.h"
#include "tools/memory_monitor.h"
#include "ui/host.h"
#include "ui/list_view.h"
#include "ui/tooltips.h"
#include "win/backup_folder.h"
#include "win/com_ptr.h"
#include "win/handle.h"
#include "win/os_version.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace shell {

inline constexpr wchar_t kMainClass[] = L"Qorvenix.frmMain";

// Posted when the window may close.
inline constexpr UINT kCloseMessage = WM_APP + 1;

inline constexpr UINT_PTR kMonitorTimer = 1;
// Runs out once, when the first list is painted and what the user has done meanwhile is answered.
inline constexpr UINT_PTR kActivateTimer = 2;
inline constexpr UINT kActivateDelay = 20;  // milliseconds

// The value labels of the detail area, in their order.
inline constexpr Control kDetailValues[] = {Control::Label1_2, Control::Label1_3, Control::Label1_11};

class frmMain final : public ui::Host, private Activity::Runner {
public:
    explicit frmMain(HINSTANCE instance);
    frmMain(const frmMain&) = delete;
    frmMain& operator=(const frmMain&) = delete;
    ~frmMain();

    // Makes the window, fills the first list and shows it. `argument` is the command line behind the program's name.
    // False when Windows refuses the window.
    bool open(std::wstring_view argument);

    // Processes messages until the window has closed.
    void run_until_closed();

    // ---- Host
    HWND window() const override { return window_; }
    void status(std::wstring_view text) override;
    std::wstring status_text() const override { return status_.text(); }
    ui::Answer confirm(std::wstring_view text, std::wstring_view title, UINT icon) override;
    std::optional<std::wstring> input(std::wstring_view prompt, std::wstring_view title) override;
    bool pump() override;
    void hourglass(bool shown) override;

private:
    // ---- start and end: frmMain.cpp
    void Form_Load(std::wstring_view argument);
    void Form_Activate();
    bool Form_QueryUnload();
    void Form_Unload();
    void close() override;
    void close_now();
    std::optional<LRESULT> end_message(UINT message, WPARAM wide);  // nothing for a message that ends nothing
    void replace_window_procedure();
    void restore_window_procedure();
    void show_status();

    // ---- controls, fonts, layout: frmMain_controls.cpp
    void create_first_controls();
    void create_later_controls();
    void create_controls(Moment moment);
    void create_tooltips();
    void put_in_order();
    void begin_com();
    HWND create_control(const ControlRow& row);
    void set_font(const ControlRow& row) const;
    void measure();
    Placement placement();
    void arrange();
    int strip_height(int width);
    void set_list_styles();
    void buffer_lists();
    void attach_system_images();
    HWND control(Control which) const { return controls_[IndexOf(which)]; }
    ui::ListView list(Control which) const { return ui::ListView(control(which)); }
    int scaled(int pixels) const { return MulDiv(pixels, dpi_, 96); }

    // ---- settings: frmMain_settings.cpp
    void load_view_options();
    void save_view_options() const;
    int stored_show_command() const;
    Rectangle stored_place() const;
    void save_window() const;
    win::BackupFolder backup_option() const;
    void restore_column_widths(Moment moment) const;
    void save_column_widths() const;
    void read_font_option();
    void save_everything() const;

    // ---- tabs: frmMain_tabs.cpp
    void create_tabs();
    bool has_tab(Tab tab) const;
    void select_tab(int place);  // 0-based; runs the tab click
    void step_tab(int direction, bool wrap);
    void mouse_wheel(int delta);
    Tab selected_tab() const;
    void tb_Click();
    void show_view(const TabRow& row);
    void show_detail(const TabRow& row);
    void name_second_button(Tab tab);
    void clear_detail_values();
    void set_detail_value(Control label, std::wstring_view text, bool is_link);
    void fill(Tab tab);
    void refresh_shown();
    void refresh_after_deletion(Activity::Request request);
    void list_filled(Control which);
    int tab_at(POINT client) const;
    void tb_MouseMove(POINT client);
    void tb_MouseLeave();
    DetailKind detail_kind() const;
    void run(Activity::Request request) override;

    // ---- messages: frmMain_messages.cpp
    static frmMain* form_of(HWND window);  // what stands in the window's user data
    static LRESULT CALLBACK DesignedProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter);
    static LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter);
    static LRESULT CALLBACK StripProcedure(HWND strip, UINT message, WPARAM wide, LPARAM parameter);
    LRESULT message(UINT message, WPARAM wide, LPARAM parameter);
    static LRESULT CALLBACK ListProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter);
    LRESULT notify(NMHDR& header);
    LRESULT list_notify(Control which, NMHDR& header);
    void command(int id, int code);
    void dispatch(const MSG& message);
    void dispatch_pending();
    const ControlRow* row_of(HWND which) const;  // null for a window that is no control of the table
    HBRUSH static_colours(HDC dc, HWND which) const;

    // ---- keys and focus: frmMain_keys.cpp
    bool translate(const MSG& message);  // true for a message that is thereby done
    bool translate_key(const MSG& message);
    bool translate_mnemonic(const MSG& message);
    void walk_focus(bool back);
    void focus_view();
    void give_focus_on();
    void keep_focus();

    // ---- menus: frmMain_menus.cpp
    void create_menus();
    void menu_opens(HMENU menu);
    void menu_select(WPARAM wide);
    void menu_Click(int id);
    void mnuFileItem_Click(int index);
    void mnuViewItem_Click(int index);
    void mnuHelpItem_Click(int index);
    bool shown_list_can_be_saved() const;
    void save_shown_list();
    void show_version();
    void check_view_items();

    // ---- what lists, labels and buttons report, stripes, sorting: frmMain_lists.cpp
    struct SortState {
        int key = -1;     // the column whose text is compared; -1: not sorted
        int column = -1;  // the column that was clicked
        ui::SortOrder order = ui::SortOrder::Ascending;
    };
    bool stripe(NMHDR& header, LRESULT& answer);
    void list_ColumnClick(Control which, int column);
    void sort_again(Control which);
    static bool is_program_list(Control which);
    void watch_list(Control which);
    static bool blocks_column(const NMHEADERW& change);
    void list_MouseMove(Control which, POINT client);
    void remember_cell(HWND which, const std::wstring& text);
    void row_selected(Control which);
    void show_row(Control which);
    void list_pressed(Control which, POINT client);
    void list_KeyDown(Control which, WORD key);
    void list_activated(Control which);
    LRESULT context_menu(HWND which, POINT screen);
    POINT menu_corner(const ui::ListView& view) const;
    void key_for_menu(Control which);
    void pop_up(Control which, POINT screen);
    void control_command(Control which, int code);
    void cmdMenu_Click(int index);
    void enable_buttons();

    // ---- programs, updates, restore points, registry path: frmMain_programs.cpp
    void fill_programs();
    ui::ListView program_list() const;
    void show_program(Control which);
    void program_KeyDown(WORD key);
    void mnuPop_Click();
    void mnuPopItem_Click(int index);
    void uninstall();
    void forced_uninstall();
    void fill_restore_points();
    void create_restore_point();
    void delete_restore_point();
    void cb_Enter();

    // ---- startup items: frmMain_startup.cpp
    void fill_startup();
    void press_startup(bool over_row);
    void show_startup_entry();
    void mnuStart_Click();
    void mnuStartItem_Click(int index);
    void delete_startup_entry();
    void files_dropped(WPARAM drop);

    // ---- services and processes: frmMain_services.cpp
    void fill_services();
    void fill_processes();
    void press_service(int row);
    void mnuServiceItem_Click(int index);

    // ---- Control Panel and system report: frmMain_sysinfo.cpp
    void fill_control_panel();
    void fill_report();

    // ---- clean-up, repairs, memory: frmMain_tools.cpp
    void mnuDelete_Click();
    void mnuDeleteItem_Click(int index);
    void mnuSet_Click();
    void mnuSetItem_Click(int index);
    void start_monitor();
    void stop_monitor();
    void tmrMem_Timer();
    void cmdSys_Click(int index);

    HINSTANCE instance_;
    std::optional<win::ComApartment> apartment_;
    HWND window_ = nullptr;
    WNDPROC designed_procedure_ = nullptr;  // what WindowProcedure hands on to
    WNDPROC strip_procedure_ = nullptr;
    WNDPROC list_procedure_ = nullptr;
    bool closed_ = false;
    bool loaded_ = false;
    bool activated_ = false;
    bool settings_restored_ = false;  // before that, what the window shows is not the user's

    int dpi_ = 96;
    win::OsVersion os_;
    std::wstring application_folder_;
    std::wstring strSID_;  // the current user's security identifier
    Settings settings_;
    win::BackupFolder backup_;
    Activity activity_;
    StatusLine status_;

    std::array<HWND, kControlCount> controls_ = {};
    std::vector<Tab> tabs_;  // on the strip, in its order
    Tab shown_tab_ = Tab::Programs;
    std::array<SortState, kControlCount> sort_;
    int hovered_tab_ = -1;
    std::wstring clicked_cell_;  // of the program lists: what "項目コピー" copies
    POINT pointer_ = {-1, -1};   // where it last moved over one of those two lists
    std::wstring pointed_cell_;  // under the pointer, of the startup and service lists
    startup::StartMenuState start_menu_;
    bool focus_view_wanted_ = false;
    HWND last_focus_ = nullptr;

    programs::ScanOptions scan_options_;
    bool stripes_ = false;
    bool hourglass_ = false;
    bool in_menu_ = false;
    int wheel_ = 0;

    ui::Tooltips tooltips_;
    win::Font font_;             // the system's message font
    win::Font configured_font_;  // the same in the face that "Font" names; empty without the option
    win::Brush window_brush_;
    LayoutMetrics metrics_;
    Placement placed_ = {};  // where the controls stand, or will stand when they are made
    int strip_width_ = -1;   // width and height of the strip as last measured
    int strip_height_ = 0;

    HMENU menu_bar_ = nullptr;  // the window's
    win::Menu mnuPop_;
    win::Menu mnuStart_;
    win::Menu mnuService_;

    win::ImageList program_images_;        // ImageList1(0): programs and updates
    win::ImageList control_panel_images_;  // ImageList1(1)
    tools::MemoryMonitor monitor_;
};

}  // namespace shell
