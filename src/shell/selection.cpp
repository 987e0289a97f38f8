#include "shell/selection.h"

#include "ui/list_view.h"

namespace shell {
namespace {

constexpr COLORREF kShare = 4;  // of the window's colour and the selection's one part is the selection's

COLORREF FaintSelection() {
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const COLORREF selection = GetSysColor(COLOR_HIGHLIGHT);
    const auto mixed = [=](int shift) {
        const COLORREF own = window >> shift & 0xFF;
        const COLORREF other = selection >> shift & 0xFF;
        return (own * (kShare - 1) + other) / kShare << shift;
    };
    return mixed(0) | mixed(8) | mixed(16);
}

}  // namespace

LRESULT DrawSelection(NMLVCUSTOMDRAW& draw) {
    const HWND list = draw.nmcd.hdr.hwndFrom;
    if (GetFocus() == list) return CDRF_DODEFAULT;
    const int selected = ui::ListView(list).selected();
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return selected < 0 ? CDRF_DODEFAULT : CDRF_NOTIFYITEMDRAW;
    if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT || static_cast<int>(draw.nmcd.dwItemSpec) != selected)
        return CDRF_DODEFAULT;
    draw.nmcd.uItemState &= ~static_cast<UINT>(CDIS_SELECTED);  // else the control takes its own colours
    draw.clrText = GetSysColor(COLOR_WINDOWTEXT);
    draw.clrTextBk = FaintSelection();
    return CDRF_DODEFAULT;
}

}  // namespace shell
