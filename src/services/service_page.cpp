#include "services/service_page.h"

namespace services {
namespace {

constexpr wchar_t kWaiting[] = L"サービスの停止を待っています。もう一度閉じると、待たずに終了します";

}  // namespace

void ServicePage::fill() { FillServiceList(list(), host()); }

std::vector<std::wstring> ServicePage::comments() const {
    std::vector<std::wstring> all;
    for (int row = 0, rows = list().count(); row < rows; ++row)
        all.push_back(CommentText(list().cell(row, ServiceColumn::Description)));
    return all;
}

// Empty space empties description and status bar.
void ServicePage::lvService_ItemClick(int row) {
    const ServiceDetail detail = row < 0 ? ServiceDetail() : ServiceDetailOf(list(), row);
    host().show_comment(detail.comment);
    host().set_status(detail.advice);
}

bool ServicePage::enabled(int item) const {
    return IsServiceItemEnabled(item, ServiceCellsOf(list(), list().selected()));
}

ui::Guard ServicePage::guard(int item) const {
    return {.alone = item >= ServiceItem::Start && item <= ServiceItem::Disabled,
            .close_notice = item == ServiceItem::Restart ? kWaiting : nullptr};
}

ui::Then ServicePage::mnuServiceItem_Click(int item) {
    if (item == ServiceItem::Refresh) return ui::Then::Refresh;
    RunServiceItem(item, list(), host());
    return ui::Then::Nothing;
}

}  // namespace services
