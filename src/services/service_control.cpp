#include "services/service_control.h"

#include "services/modService.h"
#include "win/automation.h"
#include "win/text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace services {
namespace {

constexpr int kStartTypeOffset = 7;

// A request to a service: the method of its WMI object, and the state to show once it is accepted. There is no wait:
// the cell tells what was asked for, the next refresh what came of it.
struct Request {
    int index;
    const wchar_t* method;
    std::wstring_view state;
};

constexpr Request kRequests[] = {
    {ServiceItem::Start, L"StartService", kStarted},
    {ServiceItem::Stop, L"StopService", kStopped},
    {ServiceItem::Pause, L"PauseService", kPaused},
    {ServiceItem::Resume, L"ResumeService", kStarted},
};

// One service of the list. Its row is looked up for every change: while messages are processed the list may be sorted.
class ListedService {
public:
    ListedService(const ui::ListView& list, std::wstring name) : list_(list), name_(std::move(name)) {}

    const std::wstring& name() const { return name_; }

    void set_cell(ServiceColumn::Index column, std::wstring_view text) const {
        const int row = list_.find(ServiceColumn::Name, name_);
        if (row >= 0) list_.set_cell(row, column, text);
    }

    template <class Visit>
    void for_each_object(Visit&& visit) const {
        win::QueryWmi(L"Select * From Win32_Service Where Name=" + win::QuoteForWmi(name_))
            .for_each([&](const win::Object& object) {
                visit(object);
                return true;
            });
    }

private:
    const ui::ListView& list_;
    std::wstring name_;
};

void Send(int index, const win::Object& object, const ListedService& service) {
    const auto* request = std::ranges::find(kRequests, index, &Request::index);
    if (request == std::end(kRequests)) return;
    if (object.call_wmi_method(request->method) == 0) service.set_cell(ServiceColumn::State, request->state);
}

void Restart(const win::Object& object, const ListedService& service, ui::Host& host) {
    if (ControlServiceAndWait({}, service.name(), host) == 0) return;
    if (!host.pump()) return;  // the wait was given up
    service.set_cell(ServiceColumn::State, kStopped);
    Send(ServiceItem::Start, object, service);
}

void Control(int index, const ListedService& service, ui::Host& host) {
    host.hourglass(true);
    service.for_each_object([&](const win::Object& object) {
        if (index == ServiceItem::Restart) {
            Restart(object, service, host);
        } else {
            Send(index, object, service);
        }
    });
    host.hourglass(false);
}

// Shows what Windows reports afterwards, not what was asked for.
void ChangeStartMode(int index, const ListedService& service) {
    SetServiceStartMode(service.name(), static_cast<DWORD>(index - kStartTypeOffset));
    service.for_each_object([&](const win::Object& object) {
        const std::wstring_view mode = StartModeText(object.get(L"StartMode").text());
        if (!mode.empty()) service.set_cell(ServiceColumn::StartMode, mode);
    });
}

}  // namespace

bool IsServiceItemEnabled(int index, const std::optional<ServiceCells>& row) {
    if (index == ServiceItem::Copy || index == ServiceItem::Refresh) return true;
    if (!row) return false;
    switch (index) {
        case ServiceItem::Start:
            return row->start_mode != kDisabled && row->state == kStopped;
        case ServiceItem::Stop:
            return win::ToInteger(row->accepts_stop) != 0;
        case ServiceItem::Pause:
            return row->state != kPaused && win::ToInteger(row->accepts_pause) != 0;
        case ServiceItem::Resume:
            return row->state == kPaused;
        // Even for a service that accepts no stop or whose state is unknown: the request is then refused.
        case ServiceItem::Restart:
            return row->state != kStopped;
        case ServiceItem::Automatic:
            return row->start_mode != kAutomatic;
        case ServiceItem::Manual:
            return row->start_mode != kManual;
        case ServiceItem::Disabled:
            return row->start_mode != kDisabled;
        default:
            return false;
    }
}

std::optional<ServiceCells> ServiceCellsOf(const ui::ListView& lvService, int row) {
    if (row < 0) return {};
    return ServiceCells{lvService.cell(row, ServiceColumn::State), lvService.cell(row, ServiceColumn::StartMode),
                        lvService.cell(row, ServiceColumn::AcceptsPause),
                        lvService.cell(row, ServiceColumn::AcceptsStop)};
}

void RunServiceItem(int index, const ui::ListView& lvService, ui::Host& host) {
    const ListedService service(lvService, lvService.cell(lvService.selected(), ServiceColumn::Name));
    if (service.name().empty()) return;
    if (index >= ServiceItem::Start && index <= ServiceItem::Restart) Control(index, service, host);
    if (index >= ServiceItem::Automatic && index <= ServiceItem::Disabled) ChangeStartMode(index, service);
}

}  // namespace services
