// The tab without a list: system report, memory figures, memory-release program, box for registry paths.
#pragma once

#include "shell/control_set.h"
#include "tools/memory_monitor.h"
#include "win/handle.h"

namespace shell {

class InformationPanel {
public:
    explicit InformationPanel(const ControlSet& controls);

    // The report and the figures of this moment.
    void fill();
    // The figures alone.
    void show_figures();
    // The panel's colours are the system's anew.
    void renew_colours();
    // The brush of the report box, whose text and background colours are set; null for another control.
    HBRUSH colours_of(HWND control, HDC dc) const;
    // Ends the counting of the processors' load, for good.
    void close() { monitor_.close(); }

    // The path in txtMemPath.
    std::wstring release_program() const;
    void set_release_program(const std::wstring& path) const;
    // "..." (1), while nothing else runs, and "開放" (0). `owner` is the window of the file dialog.
    void cmdSys_Click(int index, HWND owner);
    // The label over the box for registry paths leads into the box.
    void Label1_MouseDown() const;
    // Enter released in the box.
    void cb_KeyUp() const;

private:
    const ControlSet& controls_;
    tools::MemoryMonitor monitor_;
    win::Brush window_brush_;
};

}  // namespace shell
