// A program that notes how it was started in C:\record.txt, one UTF-16 line each time: its own path, the show command
// of its first window, its command line, with tabs between. It can stand in for a program that the product starts.
//   --wait N   lives N milliseconds          --exit N   ends with exit code N
//   --hold     lives until the event "Qorvenix release" is set and notes that; 10 seconds at most
//   --start    starts itself once more, with --hold
#include <windows.h>

#include <cwchar>
#include <fstream>
#include <process.h>
#include <string>

namespace {

DWORD NumberAfter(const wchar_t* command_line, const wchar_t* option) {
    const wchar_t* at = std::wcsstr(command_line, option);
    return at ? static_cast<DWORD>(std::wcstoul(at + std::wcslen(option), nullptr, 10)) : 0;
}

void Record(const std::wstring& line) {
    std::ofstream file("C:\\record.txt", std::ios::app | std::ios::binary);
    file.write(reinterpret_cast<const char*>(line.data()), static_cast<std::streamsize>(line.size() * sizeof(wchar_t)));
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
    const wchar_t* command_line = GetCommandLineW();
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    STARTUPINFOW startup = {};
    GetStartupInfoW(&startup);
    Record(path + (L"\t" + std::to_wstring(startup.wShowWindow) + L"\t" + command_line + L"\n"));
    if (std::wcsstr(command_line, L"--start"))
        _wspawnl(_P_NOWAIT, path, L"recorder", L"--hold", static_cast<wchar_t*>(nullptr));
    const HANDLE release = OpenEventW(SYNCHRONIZE, FALSE, L"Qorvenix release");
    if (std::wcsstr(command_line, L"--hold") && WaitForSingleObject(release, 10000) == WAIT_OBJECT_0)
        Record(L"\t\treleased\n");
    Sleep(NumberAfter(command_line, L"--wait "));
    return static_cast<int>(NumberAfter(command_line, L"--exit "));
}
