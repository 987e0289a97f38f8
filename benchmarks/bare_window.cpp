// A window that shows the controls of the program's first view and does nothing else: what they cost by themselves.
#include "shown_window.h"

#include "programs/uninstall_scan.h"
#include "shell/menus.h"
#include "shell/tabs.h"
#include "ui/control.h"
#include "ui/list_view.h"

namespace {

LRESULT CALLBACK BareProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcW(window, message, wide, parameter);
}

struct BareControl {
    const wchar_t* window_class;
    const wchar_t* text;
    DWORD style;
    DWORD extended_style;
    RECT place;  // left, top, width and height in pixels
};

constexpr BareControl kBareControls[] = {
    {WC_TABCONTROLW, L"", TCS_MULTILINE | TCS_HOTTRACK, 0, {0, 0, 792, 22}},
    {WC_LISTVIEWW, L"", LVS_REPORT | LVS_SINGLESEL, WS_EX_CLIENTEDGE, {0, 22, 792, 360}},
    {L"STATIC", L"サポート：", SS_CENTERIMAGE, 0, {6, 388, 60, 16}},
    {L"STATIC", L"", SS_CENTERIMAGE, 0, {70, 388, 600, 16}},
    {L"STATIC", L"URL：", SS_CENTERIMAGE, 0, {6, 408, 60, 16}},
    {L"STATIC", L"", SS_CENTERIMAGE, 0, {70, 408, 600, 16}},
    {L"STATIC", L"HelpTel：", SS_CENTERIMAGE, 0, {6, 428, 60, 16}},
    {L"STATIC", L"", SS_CENTERIMAGE, 0, {70, 428, 600, 16}},
    {L"BUTTON", L"削除(&D)", BS_PUSHBUTTON, 0, {696, 388, 88, 22}},
    {L"BUTTON", L"強制削除(&F)", BS_PUSHBUTTON, 0, {696, 414, 88, 22}},
    {STATUSCLASSNAMEW, L"0 個の項目", SBARS_SIZEGRIP, 0, {0, 0, 0, 0}},
};

void AddTabs(HWND strip) {
    for (const shell::TabRow& row : shell::AllTabs()) {
        if (row.tab == shell::Tab::Processes) continue;
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = const_cast<wchar_t*>(row.caption);
        SendMessageW(strip, TCM_INSERTITEMW, 100, reinterpret_cast<LPARAM>(&item));
    }
}

void AddControls(HWND window, HFONT font) {
    for (const BareControl& row : kBareControls) {
        const HWND made = CreateWindowExW(row.extended_style, row.window_class, row.text,
                                          WS_CHILD | WS_VISIBLE | row.style, row.place.left, row.place.top,
                                          row.place.right, row.place.bottom, window, nullptr, nullptr, nullptr);
        SendMessageW(made, WM_SETFONT, reinterpret_cast<WPARAM>(font), FALSE);
        if (row.window_class == kBareControls[0].window_class) AddTabs(made);
        if (row.window_class == kBareControls[1].window_class)
            ui::ListView(made).add_columns(programs::kProgramColumns, 96);
    }
}

}  // namespace

int wmain() {
    INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&classes);
    WNDCLASSW description = {};
    description.lpfnWndProc = &BareProcedure;
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    description.lpszClassName = L"Qorvenix.Bare";
    RegisterClassW(&description);
    const HWND window = CreateWindowExW(0, description.lpszClassName, L"Bare", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 0,
                                        0, 800, 533, nullptr, shell::MakeMenuBar().release(), nullptr, nullptr);
    const win::Font font = ui::CreateMessageFont();
    AddControls(window, font.get());
    bench::ShowUntilClosed(window);
    return 0;
}
