#include "services/modService.h"

#include "win/handle.h"

#include <algorithm>

namespace services {
namespace {

constexpr DWORD kSliceMilliseconds = 15;

// The wide functions throughout: a name outside the system's code page would be converted to its nearest neighbour.
struct OpenedService {
    OpenedService(const std::wstring& machine_name, const std::wstring& service_name)
        : manager(OpenSCManagerW(machine_name.empty() ? nullptr : machine_name.c_str(), SERVICES_ACTIVE_DATABASEW,
                                 SC_MANAGER_ALL_ACCESS)) {
        if (manager) service.reset(OpenServiceW(manager.get(), service_name.c_str(), SERVICE_ALL_ACCESS));
    }

    win::ServiceHandle manager;
    win::ServiceHandle service;
};

// Sleeps the whole time, in slices between which the window lives. False as soon as the wait is to be left.
bool SleepAlive(DWORD milliseconds, ui::Host& host) {
    const DWORD start = GetTickCount();
    for (;;) {
        if (!host.pump()) return false;
        const DWORD elapsed = GetTickCount() - start;
        if (elapsed >= milliseconds) return true;
        Sleep(std::min(milliseconds - elapsed, kSliceMilliseconds));
    }
}

}  // namespace

long SetServiceStartMode(const std::wstring& service_name, DWORD start_type) {
    const OpenedService opened({}, service_name);
    if (!opened.service) return -1;
    ChangeServiceConfigW(opened.service.get(), SERVICE_NO_CHANGE, start_type, SERVICE_NO_CHANGE, nullptr, nullptr,
                         nullptr, nullptr, nullptr, nullptr, nullptr);
    return static_cast<long>(start_type);
}

long ControlServiceAndWait(const std::wstring& machine_name, const std::wstring& service_name, ui::Host& host) {
    const OpenedService opened(machine_name, service_name);
    if (!opened.service) return 0;
    SERVICE_STATUS status = {};
    const long accepted = ControlService(opened.service.get(), SERVICE_CONTROL_STOP, &status);
    QueryServiceStatus(opened.service.get(), &status);
    // The service promises to advance its check point within the wait hint; no limit of ours cuts it short, only the
    // host does.
    DWORD check_point = 0;
    while (status.dwCurrentState != SERVICE_STOPPED) {
        check_point = status.dwCheckPoint;
        if (!SleepAlive(status.dwWaitHint, host)) break;
        QueryServiceStatus(opened.service.get(), &status);
        if (status.dwCheckPoint <= check_point) break;
    }
    return accepted;
}

}  // namespace services
