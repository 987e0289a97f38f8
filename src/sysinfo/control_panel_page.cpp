#include "sysinfo/control_panel_page.h"

#include "win/file_icon.h"

namespace sysinfo {

void ControlPanelPage::attach(HWND window, ui::PageHost& host, int scale) {
    Page::attach(window, host, scale);
    icons_ = win::CreateSmallIconList();
    list().set_small_images(icons_.get());
}

void ControlPanelPage::fill() {
    FillControlPanelList(list(), icons_.get(), os_.number(), QueryControlPanelFolders(), host());
}

void ControlPanelPage::activate() {
    const int row = list().selected();
    if (row >= 0) OpenControlPanelRow(host().window(), list().cell(row, ControlPanelColumn::Path));
}

}  // namespace sysinfo
