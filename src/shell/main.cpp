#include "shell/frmMain.h"
#include "win/system_library.h"

namespace {

// Without this a library planted beside the program would be loaded in place of the system's. Neither function
// exists on Windows 2000.
void SearchSystemFolderOnly() {
    constexpr DWORD kSystemFolder = 0x800;  // LOAD_LIBRARY_SEARCH_SYSTEM32
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    if (const auto set = win::FindFunction<BOOL(WINAPI*)(DWORD)>(kernel, "SetDefaultDllDirectories")) {
        set(kSystemFolder);
    } else if (const auto leave_out = win::FindFunction<BOOL(WINAPI*)(LPCWSTR)>(kernel, "SetDllDirectoryW")) {
        leave_out(L"");
    }
}

}  // namespace

// The header's names are another naming. NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t* argument, int) {
    SearchSystemFolderOnly();
    // A path on a drive without a disk fails; Windows need not ask for the disk.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX);
    shell::frmMain form(instance);
    if (!form.open(argument)) return 1;
    form.run_until_closed();
    return 0;
}
