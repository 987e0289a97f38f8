// A Windows service for the tests. What it does is told by the arguments of its command line:
//   pause      accepts pause and continue
//   nostop     refuses to be stopped
//   steps=N    stops in N steps ...
//   step=MS    ... of this length ...
//   hint=MS    ... promising this wait hint ...
//   frozen     ... without ever advancing its check point
#include <winsock2.h>

#include <windows.h>

#include <cwchar>

namespace {

// Whether the command line has that option, and the number behind it.
bool Has(const wchar_t* option) { return std::wcsstr(GetCommandLineW(), option) != nullptr; }
DWORD NumberAfter(const wchar_t* option) {
    return Has(option) ? std::wcstoul(std::wcsstr(GetCommandLineW(), option) + std::wcslen(option), nullptr, 10) : 0;
}

SERVICE_STATUS_HANDLE reporter = nullptr;
HANDLE stop_wanted = nullptr;

void Report(DWORD state, DWORD check_point = 0, DWORD hint = 0) {
    SERVICE_STATUS status = {};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    if (!Has(L"nostop")) status.dwControlsAccepted |= SERVICE_ACCEPT_STOP;
    if (Has(L"pause")) status.dwControlsAccepted |= SERVICE_ACCEPT_PAUSE_CONTINUE;
    status.dwCheckPoint = check_point;
    status.dwWaitHint = hint;
    SetServiceStatus(reporter, &status);
}

void WINAPI Control(DWORD control) {
    if (control == SERVICE_CONTROL_PAUSE) Report(SERVICE_PAUSED);
    if (control == SERVICE_CONTROL_CONTINUE) Report(SERVICE_RUNNING);
    if (control == SERVICE_CONTROL_STOP) {
        if (NumberAfter(L"steps=") > 0) Report(SERVICE_STOP_PENDING, 1, NumberAfter(L"hint="));
        SetEvent(stop_wanted);
    }
}

void WINAPI Run(DWORD, LPWSTR* arguments) {
    reporter = RegisterServiceCtrlHandlerW(arguments[0], Control);
    stop_wanted = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    Report(SERVICE_RUNNING);
    WaitForSingleObject(stop_wanted, INFINITE);
    for (DWORD step = 1; step <= NumberAfter(L"steps="); ++step) {
        Report(SERVICE_STOP_PENDING, Has(L"frozen") ? 1 : step, NumberAfter(L"hint="));
        Sleep(NumberAfter(L"step="));
    }
    Report(SERVICE_STOPPED);
}

}  // namespace

int wmain() {
    wchar_t name[] = L"";
    const SERVICE_TABLE_ENTRYW table[] = {{name, Run}, {nullptr, nullptr}};
    return StartServiceCtrlDispatcherW(table) ? 0 : 1;
}
