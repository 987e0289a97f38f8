#include "sysinfo/report_box.h"

#include "programs/modReg.h"
#include "sysinfo/system_report.h"
#include "win/handle.h"

#include <vector>

namespace sysinfo {
namespace {

constexpr unsigned kMargin = 5;  // pixels

int TextWidth(HDC dc, std::wstring_view text) {
    SIZE size = {};
    GetTextExtentPoint32W(dc, text.data(), static_cast<int>(text.size()), &size);
    return size.cx;
}

// The width of a character as an edit control counts its tab stops with it. Systems differ there, and with Japanese
// fonts widely, so a control of its own is asked.
int TabCharacterWidth(WPARAM font) {
    constexpr int kWidths = 16;
    constexpr int kDistance = 4 * kWidths;
    const win::Window probe(CreateWindowExW(0, L"EDIT", L"", WS_POPUP | ES_MULTILINE | ES_AUTOHSCROLL, 0, 0, 640, 100,
                                            nullptr, nullptr, nullptr, nullptr));
    SendMessageW(probe.get(), WM_SETFONT, font, FALSE);
    SendMessageW(probe.get(), EM_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&kDistance));
    SetWindowTextW(probe.get(), L"\t|");
    const auto left = [&](WPARAM character) {
        return static_cast<short>(LOWORD(SendMessageW(probe.get(), EM_POSFROMCHAR, character, 0)));
    };
    return (left(1) - left(0)) / kWidths;
}

int TabDistanceFor(HWND box) {
    const auto font = static_cast<WPARAM>(SendMessageW(box, WM_GETFONT, 0, 0));
    const win::WindowDc dc(box);
    const win::Selected selected(dc.get(), font ? reinterpret_cast<HGDIOBJ>(font) : GetStockObject(SYSTEM_FONT));
    std::vector<LabelExtent> labels;
    for (const ReportLine& line : ReportLines()) {
        if (line.value) labels.push_back({TextWidth(dc.get(), line.label), line.tabs});
    }
    return BestTabDistance(labels, TabCharacterWidth(font));
}

}  // namespace

void ShowInReportBox(HWND box, const std::wstring& report) {
    const int distance = TabDistanceFor(box);
    SendMessageW(box, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, programs::MakeLong(kMargin, kMargin));
    SendMessageW(box, EM_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&distance));
    SetWindowTextW(box, report.c_str());
}

}  // namespace sysinfo
