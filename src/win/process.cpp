#include "win/process.h"

#include "win/system_library.h"

namespace win {

StartedProcess StartProcess(const std::wstring& application, std::wstring command_line, WindowStyle style) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = static_cast<WORD>(style);
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(application.empty() ? nullptr : application.c_str(), command_line.data(), nullptr, nullptr,
                        FALSE, 0, nullptr, nullptr, &startup, &started)) {
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

}  // namespace win
