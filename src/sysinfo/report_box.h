// The text box of the system report.
#pragma once

#include "win/platform.h"

#include <string>

namespace sysinfo {

// Puts the report into `box` (txtSys), a multi-line edit control: margins and tab stops for its font first.
void ShowInReportBox(HWND box, const std::wstring& report);

}  // namespace sysinfo
