// The Control Panel list against a bare loop that makes the same Windows calls, the system report, and what a tick of
// the memory monitor costs.
#include "sysinfo/control_panel.h"
#include "sysinfo/control_panel_catalogue.h"
#include "sysinfo/modSystemInfo.h"
#include "tools/memory_monitor.h"
#include "win/folders.h"

#include "../tests/support/test_host.h"
#include "../tests/support/test_list.h"
#include "timing.h"

#include <cstdio>

namespace {

constexpr unsigned kWindows7 = 61;

// What a fill asks of Windows, and rows of empty cells.
void BareCatalogue(const TestList& shown, HIMAGELIST images, const sysinfo::ControlPanelFolders& folders) {
    const ui::ListFill fill(shown.list);
    shown.list.clear();
    ImageList_RemoveAll(images);
    const std::wstring* const roots[] = {nullptr, &folders.system, &folders.programs, &folders.windows};
    const auto path = [&](const sysinfo::Location& location) {
        const std::wstring* const root = roots[static_cast<int>(location.folder)];
        return root ? *root + L"\\" + location.name : std::wstring(location.name);
    };
    for (const sysinfo::CatalogueRow& row : sysinfo::ControlPanelCatalogue()) {
        if (kWindows7 < row.versions.from || kWindows7 > row.versions.to) continue;
        if (row.file && !PathFileExistsW(path(row.file).c_str())) continue;
        win::Icon icon;
        if (ExtractIconExW(path(row.icon ? row.icon : row.file).c_str(), row.icon_index, nullptr, icon.put(), 1) == 1) {
            ImageList_AddIcon(images, icon.get());
        } else if (!row.file && !row.always) {
            continue;
        }
        const int index = shown.list.add_row(L"");
        shown.list.set_cell(index, sysinfo::ControlPanelColumn::Comment, L"");
        shown.list.set_cell(index, sysinfo::ControlPanelColumn::Path, L"");
    }
}

void MeasureCatalogue() {
    const TestList shown(sysinfo::kControlPanelColumns);
    const win::ImageList images(ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, 0, 64));
    const auto folders = sysinfo::QueryControlPanelFolders();
    TestHost host;
    const auto fill = [&] { sysinfo::FillControlPanelList(shown.list, images.get(), kWindows7, folders, host); };
    const double first = BestOf(1, fill);
    const double again = BestOf(20, fill);
    const int rows = shown.list.count();
    const double bare = BestOf(20, [&] { BareCatalogue(shown, images.get(), folders); });
    std::printf("catalogue: first fill %.1f ms, later %.2f ms, bare loop %.2f ms, ratio %.2f (%d rows)\n", first, again,
                bare, again / bare, rows);
}

void MeasureReport() {
    const double report = BestOf(10, [] { sysinfo::BuildSystemReport(win::SystemDirectory()); });
    const double address = BestOf(10, [] { sysinfo::GetIPAddress(); });
    std::printf("report: %.2f ms, of these the address %.2f ms\n", report, address);
}

// Ten minutes of ticks at once.
void MeasureTicks() {
    constexpr int kTicks = 10 * 60 * 1000 / static_cast<int>(tools::kTickInterval);
    std::size_t written = 0;
    SYSTEMTIME time = {};
    tools::MemoryMonitor monitor;
    const double first = BestOf(1, [&] { monitor.read(); });
    const double hidden = BestOf(5, [&] {
        for (int tick = 0; tick < kTicks; ++tick) {
            GetLocalTime(&time);
            written += tools::TitleText(time).size();
        }
    });
    const double shown = BestOf(5, [&] {
        for (int tick = 0; tick < kTicks; ++tick)
            written += monitor.read()[tools::kMemoryLoad].size();
    });
    std::printf("%d ticks: title %.2f ms, panel %.2f ms more; first reading %.1f ms (%u characters)\n", kTicks, hidden,
                shown, first, static_cast<unsigned>(written));
}

}  // namespace

int wmain() {
    MeasureCatalogue();
    MeasureReport();
    MeasureTicks();
    return 0;
}
