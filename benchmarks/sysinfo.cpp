// The Control Panel list, the system report, and ten minutes of the memory monitor's ticks at once.
#include "bare_list.h"
#include "results.h"

#include "../tests/support/test_host.h"
#include "../tests/support/test_list.h"
#include "sysinfo/control_panel.h"
#include "sysinfo/control_panel_catalogue.h"
#include "sysinfo/modSystemInfo.h"
#include "sysinfo/report_box.h"
#include "sysinfo/system_report.h"
#include "tools/memory_monitor.h"
#include "win/folders.h"
#include "win/recycle_bin.h"
#include "win/system_library.h"
#include "win/system_text.h"

namespace {

constexpr win::VersionNumber kWindows7 = {6, 1};

// What a fill asks of Windows and says to the list.
void BareCatalogue(const ui::ListView& window, HIMAGELIST images, const sysinfo::ControlPanelFolders& folders) {
    bench::BareList list(&window);
    ImageList_RemoveAll(images);
    const std::wstring* const roots[] = {nullptr, &folders.system, &folders.programs, &folders.windows};
    const auto path = [&](const sysinfo::Location& location) {
        const std::wstring* const root = roots[static_cast<int>(location.folder)];
        return root ? *root + L"\\" + location.name : std::wstring(location.name);
    };
    for (const sysinfo::CatalogueRow& row : sysinfo::ControlPanelCatalogue()) {
        if (kWindows7 < row.versions.from || row.versions.to < kWindows7) continue;
        if (row.file && !PathFileExistsW(path(row.file).c_str())) continue;
        win::Icon icon;
        if (ExtractIconExW(path(row.icon ? row.icon : row.file).c_str(), row.icon_index, nullptr, icon.put(), 1) == 1) {
            ImageList_AddIcon(images, icon.get());
        } else if (!row.file && !row.always) {
            continue;
        }
        list.add(row.name);
        list.set(sysinfo::ControlPanelColumn::Comment, row.comment);
        list.set(sysinfo::ControlPanelColumn::Path, row.path ? row.path : L"");
    }
}

void MeasureCatalogue() {
    const TestList shown(sysinfo::kControlPanelColumns);
    const win::ImageList images(ImageList_Create(16, 16, ILC_COLOR32 | ILC_MASK, 0, 64));
    const auto folders = sysinfo::QueryControlPanelFolders();
    TestHost host;
    const auto fill = [&] { sysinfo::FillControlPanelList(shown.list, images.get(), kWindows7, folders, host); };
    fill();
    const int rows = shown.list.count();
    bench::Compare("Control Panel", rows, 21, {fill, [&] { BareCatalogue(shown.list, images.get(), folders); }}, 1.2);
    bench::Expect(rows > 0 && shown.list.count() == rows, "the rows of the Control Panel");
}

// A library that is loaded for as long as it is needed.
class Library {
public:
    explicit Library(const wchar_t* name) : module_(win::LoadSystemLibrary(name)) {}
    template <class Function, class... Arguments>
    auto call(const char* name, Arguments... arguments) const {
        return win::FindFunction<Function*>(module_.get(), name)(arguments...);
    }

private:
    win::Module module_;
};

void BareFileVersion() {
    const Library library(L"version.dll");
    const std::string controls = win::ToAnsi(win::SystemDirectory() + L"\\comctl32.dll");
    DWORD ignored = 0;
    const auto size =
        library.call<decltype(GetFileVersionInfoSizeA)>("GetFileVersionInfoSizeA", controls.c_str(), &ignored);
    std::vector<std::byte> record(size);
    library.call<decltype(GetFileVersionInfoA)>("GetFileVersionInfoA", controls.c_str(), DWORD{0}, size, record.data());
}

void BareAddress() {
    const Library library(L"wsock32.dll");
    WSADATA data = {};
    library.call<decltype(WSAStartup)>("WSAStartup", WORD{MAKEWORD(1, 1)}, &data);
    char host[65] = {};
    library.call<decltype(gethostname)>("gethostname", host, 64);
    library.call<decltype(gethostbyname)>("gethostbyname", host);
    library.call<decltype(WSACleanup)>("WSACleanup");
}

// The calls of Windows that the report's lines need.
int BareFacts() {
    int sum = GetSystemMetrics(SM_CXSCREEN) + GetSystemMetrics(SM_CYSCREEN) + GetKeyboardType(0) + GetKeyboardType(1) +
              GetKeyboardType(2);
    OSVERSIONINFOEXW version = {};
    version.dwOSVersionInfoSize = sizeof(OSVERSIONINFOW);
    GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&version));
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&version));
    DWORD length = 256;
    wchar_t name[256];
    GetUserNameW(name, &length);
    length = 256;
    GetComputerNameW(name, &length);
    const win::WindowDc screen(nullptr);
    sum += GetDeviceCaps(screen.get(), LOGPIXELSX) + GetDeviceCaps(screen.get(), LOGPIXELSY);
    SHQUERYRBINFO bin = {};
    bin.cbSize = sizeof bin;
    SHQueryRecycleBinW(nullptr, &bin);
    win::RegKey key;
    RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Internet Explorer", 0, KEY_ALL_ACCESS, key.put());
    length = sizeof name;
    RegQueryValueExW(key.get(), L"Version", nullptr, nullptr, reinterpret_cast<BYTE*>(name), &length);
    BareFileVersion();
    BareAddress();
    return sum;
}

win::Window MakeBox() {
    return win::Window(CreateWindowExW(0, L"EDIT", L"", WS_POPUP | ES_MULTILINE | ES_AUTOHSCROLL, 0, 0, 640, 480,
                                       nullptr, nullptr, nullptr, nullptr));
}

// Another control is asked for the width of its tab stops, and the labels are measured.
void BareTabs(HWND box) {
    const win::Window probe = MakeBox();
    const int distance = 64;
    SendMessageW(probe.get(), WM_SETFONT, 0, FALSE);
    SendMessageW(probe.get(), EM_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&distance));
    SetWindowTextW(probe.get(), L"\t|");
    SendMessageW(probe.get(), EM_POSFROMCHAR, 0, 0);
    SendMessageW(probe.get(), EM_POSFROMCHAR, 1, 0);
    const win::WindowDc dc(box);
    for (const sysinfo::ReportLine& line : sysinfo::ReportLines()) {
        SIZE size = {};
        if (line.value) GetTextExtentPoint32W(dc.get(), line.label, lstrlenW(line.label), &size);
    }
    SendMessageW(box, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(5, 5));
    SendMessageW(box, EM_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&distance));
}

void MeasureReport() {
    const win::Window box = MakeBox();
    const std::wstring report = sysinfo::BuildSystemReport(win::SystemDirectory());
    int sum = 0;
    const auto bare = [&] {
        sum += BareFacts();
        BareTabs(box.get());
        SetWindowTextW(box.get(), report.c_str());
    };
    bench::Compare(
        "system report", 1, 41,
        {[&] { sysinfo::ShowInReportBox(box.get(), sysinfo::BuildSystemReport(win::SystemDirectory())); }, bare}, 1.2);
    bench::Expect(sum > 0 && GetWindowTextLengthW(box.get()) > 100, "the system report");
}

// The title alone against the two calls behind it, and with the panel in view.
void MeasureTicks() {
    constexpr int kTicks = 10 * 60 * 1000 / static_cast<int>(tools::kTickInterval);
    const win::Window window(
        CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 64, 48, nullptr, nullptr, nullptr, nullptr));
    tools::MemoryMonitor monitor;
    SYSTEMTIME time = {};
    std::size_t written = 0;
    const auto ticks = [&](auto&& text) {
        for (int tick = 0; tick < kTicks; ++tick) {
            GetLocalTime(&time);
            SetWindowTextW(window.get(), text());
        }
    };
    std::wstring title;
    const auto titles = [&] {
        title = tools::TitleText(time);
        return title.c_str();
    };
    const auto panel = [&] {
        written += monitor.read()[tools::kMemoryLoad].size();
        return titles();
    };
    const auto bare = [&] { ticks([] { return L"Qorvenix     2024(令和6)/05/01 (水) 09:08:07"; }); };
    bench::Compare("ten minutes of the title's clock", kTicks, 9, {[&] { ticks(titles); }, bare});
    bench::Compare("ten minutes of the memory panel", kTicks, 9, {[&] { ticks(panel); }, bare});
    bench::Expect(written > 0, "the memory panel");
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    bench::Begin(count, arguments);
    MeasureCatalogue();
    MeasureReport();
    MeasureTicks();
    return bench::End();
}
