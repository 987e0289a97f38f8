// A library that somebody has put beside the program under the name of one of Windows'. It adds the name under which
// it was loaded to C:\planted.txt, a line of ANSI text each time.
#include <windows.h>

#include <string>

// Unprotected: what sets the protection up loads libraries itself, before the note is written.
__attribute__((no_stack_protector)) BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, void*) {
    if (reason != DLL_PROCESS_ATTACH) return TRUE;
    char path[MAX_PATH] = {};
    GetModuleFileNameA(module, path, MAX_PATH);
    const std::string line = std::string(path) + "\n";
    const HANDLE file =
        CreateFileW(L"C:\\planted.txt", FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    CloseHandle(file);
    return TRUE;
}
