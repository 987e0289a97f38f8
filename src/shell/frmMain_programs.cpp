// The tabs of installed programs and updates and of restore points, and the box for registry paths.
#include "shell/frmMain.h"

#include "programs/detail_link.h"
#include "programs/program_actions.h"
#include "programs/program_details.h"
#include "programs/program_menu.h"
#include "programs/registry_editor.h"
#include "programs/restore_points.h"
#include "ui/clipboard.h"
#include "ui/control.h"

namespace shell {

using programs::ProgramItem;

void frmMain::fill_programs() {
    if (is_program_list(RowOf(shown_tab_).view)) clear_detail_values();
    if (scan_options_.show_icons) begin_com();
    const programs::ProgramLists lists = {list(Control::ListView1_0), list(Control::ListView1_1),
                                          program_images_.get()};
    programs::ScanUninstallKeys(lists, scan_options_, strSID_, *this);
    list_filled(Control::ListView1_0);
    list_filled(Control::ListView1_1);
}

ui::ListView frmMain::program_list() const {
    return list(shown_tab_ == Tab::Updates ? Control::ListView1_1 : Control::ListView1_0);
}

void frmMain::show_program(Control which) {
    const auto row = programs::SelectedProgram(list(which));
    if (!row) return;
    status(row->name);
    const programs::ProgramDetails details = programs::ReadProgramDetails(row->place, row->key_name, strSID_);
    const std::wstring* values[] = {&details.help_link, &details.url_info_about, &details.help_telephone};
    for (std::size_t i = 0; i < std::size(values); ++i) {
        set_detail_value(kDetailValues[i], *values[i], programs::LooksLikeLink(*values[i]));
    }
}

void frmMain::program_KeyDown(WORD key) {
    const int item = programs::ProgramItemForKey(key, GetKeyState(VK_CONTROL) < 0);
    if (item != 0) mnuPopItem_Click(item);
}

void frmMain::mnuPop_Click() {
    const programs::ProgramMenuFacts facts = {program_list().selected() >= 0, activity_.busy()};
    for (const ui::MenuItem& item : programs::kProgramMenu) {
        EnableItem(mnuPop_.get(), MenuArray::mnuPopItem, item.index, programs::IsProgramItemEnabled(item.index, facts));
    }
}

void frmMain::mnuPopItem_Click(int index) {
    const auto row = programs::SelectedProgram(program_list());
    switch (index) {
        case ProgramItem::Copy:
            if (row || !clicked_cell_.empty()) ui::CopyText(window_, clicked_cell_.empty() ? row->name : clicked_cell_);
            break;
        case ProgramItem::Uninstall:
            cmdMenu_Click(0);
            break;
        case ProgramItem::ForcedUninstall:
            cmdMenu_Click(1);
            break;
        case ProgramItem::OpenFolder:
            if (row) programs::OpenInstallFolder(*row);
            break;
        case ProgramItem::Refresh:
            activity_.request(Activity::Request::Rescan);
            break;
        default:
            break;
    }
}

// The window stays usable while the uninstaller runs, but does not close, and no second uninstaller starts.
void frmMain::uninstall() {
    const auto row = programs::SelectedProgram(program_list());
    if (!row || activity_.busy()) return;
    bool ran = false;
    {
        const Activity::Busy busy(activity_);
        enable_buttons();
        ran = programs::Uninstall(*row, *this);
    }
    if (ran) activity_.request(Activity::Request::Rescan);
}

void frmMain::forced_uninstall() {
    const auto row = programs::SelectedProgram(program_list());
    if (!row || activity_.busy()) return;
    bool tried = false;
    {
        const Activity::Command command(activity_);
        const Activity::Busy busy(activity_);
        tried = programs::ForcedUninstall(*row, strSID_, *this);
    }
    if (tried) activity_.request(Activity::Request::Rescan);
}

// ---- restore points ---------------------------------------------------------------------------------------------

void frmMain::fill_restore_points() {
    const ui::ListView points = list(Control::lvRestore);
    if (!programs::ListRestorePoints(points)) points.clear();
    list_filled(Control::lvRestore);
}

void frmMain::create_restore_point() {
    const Activity::Command command(activity_);
    if (command) programs::CreateRestorePoint(list(Control::lvRestore), *this);
}

void frmMain::delete_restore_point() {
    bool agreed = false;
    {
        const Activity::Command command(activity_);
        agreed = command && programs::DeleteRestorePoint(list(Control::lvRestore), *this);
    }
    if (agreed) activity_.request(Activity::Request::TabClick);
}

// ---- the box for registry paths ---------------------------------------------------------------------------------

void frmMain::cb_Enter() {
    if (activity_.running()) return;
    const HWND cb = control(Control::cb);
    std::vector<std::wstring> history = ui::ComboItems(cb);
    const std::wstring text = programs::OpenTypedRegistryPath(ui::TextOf(cb), history);
    ui::SetText(cb, text);
    if (text.empty()) return;
    ui::SetComboItems(cb, history);
    SendMessageW(cb, CB_SETCURSEL, 0, 0);
}

}  // namespace shell
