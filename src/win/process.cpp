#include "win/process.h"

#include "win/folders.h"

namespace win {

StartedProcess StartProcess(const std::wstring& application, std::wstring command_line, WindowStyle style) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = static_cast<WORD>(style);
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(application.empty() ? nullptr : application.c_str(), command_line.data(), nullptr, nullptr,
                        FALSE, CREATE_DEFAULT_ERROR_MODE, nullptr, nullptr, &startup, &started)) {
        return {};
    }
    Handle thread(started.hThread);
    return {Handle(started.hProcess), started.dwProcessId};
}

StartedProcess StartSystemProgram(std::wstring_view name, std::wstring command_line, WindowStyle style) {
    const std::wstring application = FindSystemFile(name);
    if (application.empty()) return {};
    return StartProcess(application, std::move(command_line), style);
}

StartedProcess StartElevated(HWND owner, const std::wstring& application, const std::wstring& arguments,
                             WindowStyle style) {
    SHELLEXECUTEINFOW record = {};
    record.cbSize = sizeof record;
    record.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
    record.hwnd = owner;
    record.lpVerb = L"runas";
    record.lpFile = application.c_str();
    record.lpParameters = arguments.c_str();
    record.nShow = static_cast<int>(style);
    if (!ShellExecuteExW(&record)) return {};
    return {Handle(record.hProcess), 0};
}

void WaitForMessage(HANDLE process, DWORD milliseconds) {
    MsgWaitForMultipleObjects(process ? 1 : 0, &process, FALSE, milliseconds, QS_ALLINPUT);
}

}  // namespace win
