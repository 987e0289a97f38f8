// The test service, installed in the running system while the object lives.
#pragma once

#include "support/stand_in.h"
#include "win/handle.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

class InstalledService {
public:
    // `arguments` tell the service what to do; see its source. Every service has a name of its own, because a deleted
    // one is not gone before its process.
    explicit InstalledService(const std::wstring& arguments, const std::wstring& first_part = L"Qorvenix")
        : name(first_part + std::to_wstring(++installed_)) {
        REQUIRE_THROW_AWAY();
        const std::wstring command = L"\"" + StandIn::built(L"test_service.exe") + L"\" " + arguments;
        manager_.reset(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
        service_.reset(CreateServiceW(manager_.get(), name.c_str(), (L"display " + name).c_str(), SERVICE_ALL_ACCESS,
                                      SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE,
                                      command.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
        REQUIRE(service_);
    }
    InstalledService(const InstalledService&) = delete;
    InstalledService& operator=(const InstalledService&) = delete;
    ~InstalledService() {
        remove();
        const win::Handle process(OpenProcess(PROCESS_TERMINATE, FALSE, process_id()));
        if (process) TerminateProcess(process.get(), 1);
    }

    void start() const {
        REQUIRE(StartServiceW(service_.get(), 0, nullptr));
        REQUIRE(wait_for(SERVICE_RUNNING));
    }
    void remove() const { DeleteService(service_.get()); }

    DWORD state() const { return status().dwCurrentState; }
    DWORD process_id() const { return status().dwProcessId; }
    DWORD start_type() const {
        std::vector<std::byte> buffer(8192);
        auto* configuration = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(buffer.data());
        DWORD needed = 0;
        QueryServiceConfigW(service_.get(), configuration, static_cast<DWORD>(buffer.size()), &needed);
        return configuration->dwStartType;
    }

    bool wait_for(DWORD wanted) const {
        for (int tenths = 0; tenths < 100 && state() != wanted; ++tenths)
            Sleep(100);
        return state() == wanted;
    }

    const std::wstring name;

private:
    SERVICE_STATUS_PROCESS status() const {
        SERVICE_STATUS_PROCESS status = {};
        DWORD needed = 0;
        QueryServiceStatusEx(service_.get(), SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status), sizeof status,
                             &needed);
        return status;
    }

    static inline int installed_ = 0;

    win::ServiceHandle manager_;
    win::ServiceHandle service_;
};
