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
#include <string_view>

namespace {

struct Options {
    bool pause = false;
    bool stop = true;
    bool frozen = false;
    DWORD steps = 0;
    DWORD step = 0;
    DWORD hint = 0;
};

Options options;
SERVICE_STATUS_HANDLE reporter = nullptr;
HANDLE stop_wanted = nullptr;

void Report(DWORD state, DWORD check_point = 0, DWORD hint = 0) {
    SERVICE_STATUS status = {};
    status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
    status.dwCurrentState = state;
    if (options.stop) status.dwControlsAccepted |= SERVICE_ACCEPT_STOP;
    if (options.pause) status.dwControlsAccepted |= SERVICE_ACCEPT_PAUSE_CONTINUE;
    status.dwCheckPoint = check_point;
    status.dwWaitHint = hint;
    SetServiceStatus(reporter, &status);
}

void WINAPI Control(DWORD control) {
    if (control == SERVICE_CONTROL_PAUSE) Report(SERVICE_PAUSED);
    if (control == SERVICE_CONTROL_CONTINUE) Report(SERVICE_RUNNING);
    if (control == SERVICE_CONTROL_STOP) {
        if (options.steps > 0) Report(SERVICE_STOP_PENDING, 1, options.hint);
        SetEvent(stop_wanted);
    }
}

void WINAPI Run(DWORD, LPWSTR* arguments) {
    reporter = RegisterServiceCtrlHandlerW(arguments[0], Control);
    stop_wanted = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    Report(SERVICE_RUNNING);
    WaitForSingleObject(stop_wanted, INFINITE);
    for (DWORD step = 1; step <= options.steps; ++step) {
        Report(SERVICE_STOP_PENDING, options.frozen ? 1 : step, options.hint);
        Sleep(options.step);
    }
    Report(SERVICE_STOPPED);
}

void Read(std::wstring_view argument) {
    const std::size_t equals = argument.find(L'=');
    const std::wstring_view name = argument.substr(0, equals);
    const DWORD number =
        equals == argument.npos ? 0 : static_cast<DWORD>(wcstoul(argument.data() + equals + 1, nullptr, 10));
    if (name == L"pause") options.pause = true;
    if (name == L"nostop") options.stop = false;
    if (name == L"frozen") options.frozen = true;
    if (name == L"steps") options.steps = number;
    if (name == L"step") options.step = number;
    if (name == L"hint") options.hint = number;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    for (int index = 1; index < count; ++index)
        Read(arguments[index]);
    wchar_t name[] = L"";
    const SERVICE_TABLE_ENTRYW table[] = {{name, Run}, {nullptr, nullptr}};
    return StartServiceCtrlDispatcherW(table) ? 0 : 1;
}
