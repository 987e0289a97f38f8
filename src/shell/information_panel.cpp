#include "shell/information_panel.h"

#include "programs/registry_editor.h"
#include "sysinfo/modSystemInfo.h"
#include "sysinfo/report_box.h"
#include "ui/control.h"
#include "win/folders.h"

namespace shell {

InformationPanel::InformationPanel(const ControlSet& controls) : controls_(controls) { renew_colours(); }

void InformationPanel::fill() {
    const HWND report = controls_.at(Control::txtSys);
    sysinfo::ShowInReportBox(report, sysinfo::BuildSystemReport(win::SystemDirectory()));
    ui::FitScrollBar(report);
    show_figures();
}

void InformationPanel::show_figures() {
    const tools::MemoryTexts& texts = monitor_.read();
    for (int figure = 0; figure < tools::kMemoryFigures; ++figure) {
        ui::SetText(controls_.at(Element(Control::lblMem_0, figure, 2)), texts[static_cast<std::size_t>(figure)]);
    }
}

void InformationPanel::renew_colours() { window_brush_.reset(CreateSolidBrush(GetSysColor(COLOR_WINDOW))); }

HBRUSH InformationPanel::colours_of(HWND control, HDC dc) const {
    if (control != controls_.at(Control::txtSys)) return nullptr;
    SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    SetBkColor(dc, GetSysColor(COLOR_WINDOW));
    return window_brush_.get();
}

std::wstring InformationPanel::release_program() const { return ui::TextOf(controls_.at(Control::txtMemPath)); }

void InformationPanel::set_release_program(const std::wstring& path) const {
    ui::SetText(controls_.at(Control::txtMemPath), path);
}

void InformationPanel::cmdSys_Click(int index, HWND owner) {
    if (index == 0) {
        tools::RunMemoryRelease(release_program());
        return;
    }
    const std::wstring chosen = tools::ChooseMemoryRelease(owner);
    if (!chosen.empty()) set_release_program(chosen);
}

void InformationPanel::Label1_MouseDown() const {
    SetFocus(controls_.at(Control::cb));
    SendMessageW(controls_.at(Control::cb), CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
}

void InformationPanel::cb_KeyUp() const {
    const HWND cb = controls_.at(Control::cb);
    std::vector<std::wstring> history = ui::ComboItems(cb);
    const std::wstring text = programs::OpenTypedRegistryPath(ui::TextOf(cb), history);
    ui::SetText(cb, text);
    if (text.empty()) return;
    ui::SetComboItems(cb, history);
    SendMessageW(cb, CB_SETCURSEL, 0, 0);
}

}  // namespace shell
