#include "shell/stripes.h"

#include "ui/contrast.h"
#include "ui/control.h"

namespace shell {
namespace {

constexpr COLORREF kEvenRow = RGB(255, 255, 255);
constexpr COLORREF kOddRow = RGB(240, 240, 255);

bool WantsHighContrast() {
    HIGHCONTRASTW wanted = {};
    wanted.cbSize = sizeof wanted;
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof wanted, &wanted, 0) &&
           (wanted.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

bool IsReadable() {
    const COLORREF text = GetSysColor(COLOR_WINDOWTEXT);
    return !WantsHighContrast() && ui::ContrastRatio(text, kEvenRow) >= ui::kReadableText &&
           ui::ContrastRatio(text, kOddRow) >= ui::kReadableText;
}

}  // namespace

std::optional<LRESULT> Stripes::draw(LPARAM lparam) {
    if (!shown || ui::NotificationOf(lparam).code != static_cast<UINT>(NM_CUSTOMDRAW)) return {};
    auto& draw = *reinterpret_cast<NMLVCUSTOMDRAW*>(lparam);
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) {
        readable_ = IsReadable();
        return CDRF_NOTIFYITEMDRAW;
    }
    if (draw.nmcd.dwDrawStage == CDDS_ITEMPREPAINT && readable_) {
        draw.clrTextBk = draw.nmcd.dwItemSpec % 2 == 0 ? kEvenRow : kOddRow;
    }
    return {};
}

}  // namespace shell
