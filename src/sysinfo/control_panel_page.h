// The page of Control Panel items.
#pragma once

#include "sysinfo/control_panel.h"
#include "ui/page.h"
#include "win/handle.h"
#include "win/os_version.h"

namespace sysinfo {

class ControlPanelPage final : public ui::Page {
public:
    // The version is the window's, known before the first fill.
    explicit ControlPanelPage(const win::OsVersion& os) : Page(kControlPanelColumns), os_(os) {}

    void attach(HWND window, ui::PageHost& host, int scale) override;
    void fill() override;
    void activate() override;

private:
    const win::OsVersion& os_;
    win::ImageList icons_;  // ImageList1(1)
};

}  // namespace sysinfo
