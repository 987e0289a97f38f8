// Emptying the temporary folder, which opens each file, looks where it lies and deletes what it has opened: beside a
// loop that does the same, and beside one that trusts the path.
#include "results.h"

#include "../tests/support/host_link.h"
#include "../tests/support/test_host.h"
#include "tools/modFile.h"
#include "tools/real_path.h"
#include "win/process.h"
#include "win/system_library.h"
#include "win/system_text.h"
#include "win/text.h"

namespace {

constexpr wchar_t kFolder[] = L"C:\\bench temp";
constexpr int kRounds = 5;
constexpr int kFiles = 10000;

// Runs a shell command of the host, which has to bring `sign` into being, a path on drive C:. False when it is not
// there after that many seconds: such a program has no process handle to wait for.
bool RunOnHost(const std::wstring& shell_command, const std::wstring& sign, int seconds) {
    throw_away::RequireWine();
    const std::wstring command = L"sh -c \"" + shell_command + L"\"";
    win::StartProcess(L"\\\\?\\unix\\bin\\sh", command, win::WindowStyle::Normal);
    for (int turn = 0; turn < 50 * seconds; ++turn) {
        if (GetFileAttributesW(sign.c_str()) != INVALID_FILE_ATTRIBUTES) return true;
        Sleep(20);
    }
    return false;
}

// The host makes them: Wine looks through the whole folder for each new name.
bool MakeFiles(int count) {
    const std::wstring sign = std::wstring(kFolder) + L" made";
    DeleteFileW(sign.c_str());
    const bool made = RunOnHost(L"cd '" + HostPath(kFolder) + L"' && seq " + win::ToText(count) +
                                    L" | split -l 1 -a 6 -d - file && touch '" + HostPath(sign) + L"'",
                                sign, 120);
    DeleteFileW(sign.c_str());
    return made;
}

// Finds every file and deletes it.
template <class Delete>
void BareLoop(Delete&& delete_file) {
    const std::wstring folder = tools::Extended(kFolder) + L"\\";
    WIN32_FIND_DATAW entry = {};
    const win::FindHandle find(FindFirstFileW((folder + L"*.*").c_str(), &entry));
    do {
        if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) continue;
        delete_file((folder + entry.cFileName).c_str());
    } while (FindNextFileW(find.get(), &entry));
}

void DeleteByHandle(const wchar_t* path) {
    using FinalPath = DWORD(WINAPI*)(HANDLE, LPWSTR, DWORD, DWORD);
    using SetInformation = BOOL(WINAPI*)(HANDLE, int, void*, DWORD);
    const HMODULE kernel = GetModuleHandleW(L"kernel32.dll");
    static const auto final_path = win::FindFunction<FinalPath>(kernel, "GetFinalPathNameByHandleW");
    static const auto set_information = win::FindFunction<SetInformation>(kernel, "SetFileInformationByHandle");
    const win::File file(CreateFileW(path, DELETE | FILE_READ_ATTRIBUTES, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    wchar_t real[MAX_PATH] = {};
    BOOLEAN deletes = TRUE;
    if (final_path(file.get(), real, MAX_PATH, 0) != 0) set_information(file.get(), 4, &deletes, sizeof deletes);
}

void Clean() {
    TestHost host;
    host.on_pump = [] {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
    };
    tools::DeleteFolderContents(kFolder, L"*.*", host);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    bench::Begin(count, arguments);
    const std::wstring objection = throw_away::Objection();
    bench::Expect(objection.empty(), win::ToAnsi(L"no place to delete files: " + objection).c_str());
    if (bench::failed || !CreateDirectoryW(kFolder, nullptr)) return 1;
    const int files = bench::small ? 30 : kFiles;
    const auto make = [&] { bench::Expect(MakeFiles(files), "the files to delete"); };
    const auto delete_by_path = [] { BareLoop([](const wchar_t* path) { DeleteFileW(path); }); };
    const auto delete_by_handle = [] { BareLoop(&DeleteByHandle); };
    bench::Compare("temporary files, by path", files, kRounds, {&Clean, delete_by_path, {}, make});
    bench::Compare("temporary files, by handle", files, kRounds, {&Clean, delete_by_handle, {}, make});
    bench::Expect(RemoveDirectoryW(kFolder) != FALSE, "everything is deleted");
    return bench::End();
}
