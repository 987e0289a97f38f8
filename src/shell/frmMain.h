// The program's only window. It owns every control, menu and font; what a list does is its page's. The window routes:
// it grants a command what it needs, fills what has to be filled, and shows a page its texts.
#pragma once

#include "programs/uninstall_scan.h"
#include "shell/activity.h"
#include "shell/control_set.h"
#include "shell/detail_area.h"
#include "shell/focus.h"
#include "shell/information_panel.h"
#include "shell/menus.h"
#include "shell/mod_ini.h"
#include "shell/pages.h"
#include "shell/status_line.h"
#include "shell/stripes.h"
#include "shell/tab_strip.h"
#include "ui/page.h"
#include "ui/subclass.h"
#include "win/backup_folder.h"
#include "win/com_ptr.h"
#include "win/handle.h"
#include "win/os_version.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace shell {

inline constexpr wchar_t kMainClass[] = L"Qorvenix.frmMain";

// Posted when the window may close.
inline constexpr UINT kCloseMessage = WM_APP + 1;
// Posted when the selection of the shown list is still to be shown.
inline constexpr UINT kCatchUpMessage = WM_APP + 2;

inline constexpr UINT_PTR kMonitorTimer = 1;
// Runs out once, when the first list is painted and what the user has done meanwhile is answered.
inline constexpr UINT_PTR kActivateTimer = 2;
inline constexpr UINT kActivateDelay = 20;  // milliseconds

class frmMain final : public ui::PageHost,
                      private Activity::Runner,
                      private TabStrip::Listener,
                      private ui::Subclass::Handler {
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
    void set_status(std::wstring_view text) override;
    std::wstring status_text() const override { return status_.text(); }
    ui::Answer confirm(std::wstring_view text, std::wstring_view title, UINT icon) override;
    std::optional<std::wstring> input(std::wstring_view prompt, std::wstring_view title) override;
    bool pump() override;
    void hourglass(bool shown) override;

    // ---- PageHost: frmMain_views.cpp
    void show_details(std::span<const std::wstring> values) override { detail_.show_values(values); }
    void show_comment(std::wstring_view text) override { detail_.show_comment(text); }
    void show_count(const ui::Page& page) override;
    void show_tip(HWND control, std::wstring_view text) override { controls_.tips().set(control, text); }
    void selection_changed(ui::Page& page) override;
    void file_dropped(ui::Page& page, std::wstring path) override;

private:
    // ---- start and end: frmMain.cpp
    void create_window();
    void create_first_controls();
    void create_later_controls();
    void attach_pages(CreationPhase phase);
    void Form_Load(std::wstring_view argument);
    void Form_Activate();
    bool Form_QueryUnload();
    bool refuses_close();  // and says why
    void refusal_ends();
    void Form_Unload();
    void close() override;
    void close_now();
    std::optional<LRESULT> end_message(UINT message, WPARAM wparam);  // nothing for a message that ends nothing
    void show_status();
    HWND control(Control which) const { return controls_.at(which); }

    // ---- the shown view and what runs: frmMain_views.cpp
    ui::Page* shown_page() const { return pages_.of(RowOf(shown_tab_).view); }  // null: the information panel
    void run(Activity::Request request) override;
    void settled() override;
    void tb_Click();
    void fill_page(ui::Page& page);
    void fill_shown();
    void refresh_shown();
    void request_fill(const ui::Page& page);
    void place();
    void arrange();
    void tab_selected() override;
    void strip_pressed() override;
    void tab_pointed(const wchar_t* hint) override;
    void mouse_wheel(int delta);

    // ---- commands of the pages: frmMain_commands.cpp
    void run_item(ui::Page& page, int item);
    void run_then(const ui::Page& page, ui::Then then);
    bool is_enabled(const ui::Page& page, int item) const;
    void cmdMenu_Click(int index);
    void hold_button(const ui::Page& page, int item);
    void enable_buttons();
    void drop_waiting_files();
    std::optional<LRESULT> context_menu(HWND which, POINT screen);
    void page_menu_opens(int index);
    ui::Page* page_of_menu(MenuArray popup) const;

    // ---- messages: frmMain_messages.cpp
    static LRESULT CALLBACK DesignedProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
    std::optional<LRESULT> handle(UINT message, WPARAM wparam, LPARAM lparam) override;
    LRESULT message(UINT message, WPARAM wparam, LPARAM lparam);
    std::optional<LRESULT> look_message(UINT message, WPARAM wparam, LPARAM lparam);  // fonts, colours, sizes
    LRESULT notify(LPARAM lparam);
    LRESULT list_notify(ui::Page& page, UINT code, LPARAM lparam);
    void command(int id, int code);
    void control_command(Control which, int code);
    HBRUSH static_colours(HDC dc, HWND which) const;
    void dispatch(const MSG& message);
    void dispatch_pending();

    // ---- keys: frmMain_keys.cpp
    bool translate(const MSG& message);  // true for a message that is thereby done
    bool translate_key(const MSG& message);
    bool translate_key_up(const MSG& message);
    bool translate_mnemonic(const MSG& message);
    bool press_enter(HWND focus, bool held);

    // ---- menus: frmMain_menus.cpp
    void create_menus();
    void menu_opens(HMENU menu);
    void menu_select(WPARAM wparam);
    void menu_Click(int id);
    void mnuFileItem_Click(int index);
    void mnuViewItem_Click(int index);
    void mnuDelete_Click();
    void mnuDeleteItem_Click(int index);
    void mnuSet_Click();
    void mnuSetItem_Click(int index);
    void mnuHelpItem_Click(int index);
    void save_shown_list();
    void check_view_items();
    void tmrMem_Timer();

    // ---- settings: frmMain_settings.cpp
    void load_view_options();
    void save_view_options() const;
    void save_everything() const;

    HINSTANCE instance_;
    std::optional<win::ComApartment> apartment_;
    HWND window_ = nullptr;
    ui::Subclass procedure_;  // in front of the designed one from Form_Load to Form_Unload
    bool closed_ = false;
    bool quit_ = false;  // somebody else ends the message loop
    bool loaded_ = false;
    bool activated_ = false;
    bool settings_restored_ = false;  // before that, the column widths are not the user's

    int dpi_ = 96;
    win::OsVersion os_;
    std::wstring application_folder_;
    std::wstring strSID_;  // the current user's security identifier
    Settings settings_;
    win::BackupFolder backup_;
    Activity activity_;
    StatusLine status_;

    ControlSet controls_;
    TabStrip strip_;
    programs::ScanOptions scan_options_;
    Pages pages_;
    DetailArea detail_;
    InformationPanel panel_;
    Tab shown_tab_ = Tab::Programs;
    std::vector<std::pair<ui::Page*, std::wstring>> dropped_;  // files that wait for what runs
    Focus focus_;
    bool enter_pressed_in_cb_ = false;

    Stripes stripes_;
    bool hourglass_ = false;
    const wchar_t* close_notice_ = nullptr;  // to be said before a close that ends a wait
    const wchar_t* refusal_ = nullptr;       // what was said to a close, until its reason has gone
    bool nothing_kept_ = false;              // of what the running command has deleted
    bool in_menu_ = false;

    HMENU menu_bar_ = nullptr;                     // the window's
    std::array<win::Menu, Pages::kCount> popups_;  // of the pages that have one
};

}  // namespace shell
