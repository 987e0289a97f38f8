// Stands in for srclient.dll: notes the number of each point to be removed in C:\removed.txt, one line each, and
// refuses.
#include <windows.h>

#include <string>

extern "C" __declspec(dllexport) DWORD WINAPI SRRemoveRestorePoint(DWORD number) {
    const std::string line = std::to_string(number) + "\n";
    const HANDLE file =
        CreateFileW(L"C:\\removed.txt", FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(file);
    return ERROR_INVALID_DATA;
}
