// The pop-up menu of the service list: what is enabled, and what it does.
#pragma once

#include "services/service_list.h"
#include "ui/host.h"
#include "ui/list_view.h"
#include "ui/menu.h"

#include <optional>
#include <string>

namespace services {

// The indexes of `mnuServiceItem`.
struct ServiceItem {
    enum Index : int {
        Copy = 1,
        Start = 3,
        Stop,
        Pause,
        Resume,
        Restart,
        Automatic = 9,  // 9 to 11 less 7 are SERVICE_AUTO_START, SERVICE_DEMAND_START and SERVICE_DISABLED
        Manual,
        Disabled,
        Refresh = 99
    };
};

inline constexpr ui::MenuItem kServiceMenu[] = {
    {ServiceItem::Copy, L"項目コピー(&C)"},    {2, ui::kSeparator},
    {ServiceItem::Start, L"開始(&S)"},         {ServiceItem::Stop, L"停止(&O)"},
    {ServiceItem::Pause, L"一時停止(&U)"},     {ServiceItem::Resume, L"再開(&M)"},
    {ServiceItem::Restart, L"再起動(&E)"},     {8, ui::kSeparator},
    {ServiceItem::Automatic, L"自動(&A)"},     {ServiceItem::Manual, L"手動(&L)"},
    {ServiceItem::Disabled, L"無効(&D)"},      {98, ui::kSeparator},
    {ServiceItem::Refresh, L"情報の更新(&U)"},
};

// The cells of a row that decide what can be done with its service.
struct ServiceCells {
    std::wstring state;
    std::wstring start_mode;
    std::wstring accepts_pause;
    std::wstring accepts_stop;
};

// Whether an item of `mnuServiceItem` can be chosen for a row, or (nullopt) for a press on empty space.
bool IsServiceItemEnabled(int index, const std::optional<ServiceCells>& row);

// The cells of a row; nothing for -1.
std::optional<ServiceCells> ServiceCellsOf(const ui::ListView& lvService, int row);

// Carries out an item of `mnuServiceItem` that changes the selected row's service. Nothing happens without a selection,
// and a refusal leaves the cells as they were. Messages are processed while a restart waits; no second action and no
// fill may start then.
void RunServiceItem(int index, const ui::ListView& lvService, ui::Host& host);

}  // namespace services
