#include "shell/stripes.h"

namespace shell {
namespace {

constexpr COLORREF kEvenRow = RGB(255, 255, 255);
constexpr COLORREF kOddRow = RGB(240, 240, 255);

}  // namespace

std::optional<LRESULT> DrawStripes(NMLVCUSTOMDRAW& draw) {
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT) {
        draw.clrTextBk = draw.nmcd.dwItemSpec % 2 == 0 ? kEvenRow : kOddRow;
    }
    return {};
}

}  // namespace shell
