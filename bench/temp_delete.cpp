// Emptying a folder of 100,000 small files against bare loops of the same Windows calls: as on a volume that does not
// tell links from files, Wine's, and as on one that does, Windows'. bench_temp_delete [files]
#include "../tests/support/counters.h"
#include "../tests/support/host_link.h"
#include "../tests/support/import_hook.h"
#include "../tests/support/test_host.h"

#include "timing.h"
#include "tools/modFile.h"
#include "tools/real_path.h"
#include "win/text.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace {

constexpr wchar_t kFolder[] = L"C:\\bench temp";
constexpr int kRounds = 5;

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

// Windows' own volumes tell of links.
BOOL WINAPI VolumeWithLinks(LPCWSTR, LPWSTR, DWORD, DWORD*, DWORD*, DWORD* flags, LPWSTR, DWORD) {
    *flags = FILE_SUPPORTS_REPARSE_POINTS;
    return TRUE;
}

struct Way {
    const char* name;
    void (*run)();
};

// Each bare loop and then what is measured against it.
constexpr Way kWays[] = {
    {"links shown: bare loop", [] { BareLoop([](const wchar_t* path) { DeleteFileW(path); }); }},
    {"links shown: DeleteFolderContents",
     [] {
         const ImportHook hook("GetVolumeInformationW", &VolumeWithLinks);
         Clean();
     }},
    {"links not shown: bare loop", [] { BareLoop(&DeleteByHandle); }},
    {"links not shown: DeleteFolderContents", &Clean},
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
    setvbuf(stdout, nullptr, _IONBF, 0);
    if (const std::wstring objection = throw_away::Objection(); !objection.empty()) {
        std::printf("not here: %s\n", win::ToAnsi(objection).c_str());
        return 1;
    }
    const int files = count > 1 ? win::ToInteger(arguments[1]) : 100000;
    if (!CreateDirectoryW(kFolder, nullptr)) return 1;
    // Wine's two processes may or may not find themselves on one processor: the best times compare like with like.
    double best[std::size(kWays)] = {1e9, 1e9, 1e9, 1e9};
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t way = 0; way < std::size(kWays); ++way) {
            if (!MakeFiles(files)) return 1;
            const Counters before = CountOwn();
            const double time = Once(kWays[way].run);
            best[way] = std::min(best[way], time);
            const Counters after = CountOwn();
            std::printf("%-38s %8.0f ms   handles %+ld   private memory %+ld KB\n", kWays[way].name, time,
                        after.handles - before.handles, after.private_kilobytes - before.private_kilobytes);
        }
    }
    std::printf("\nbest of %d rounds with %d files\n", kRounds, files);
    std::printf("DeleteFolderContents : bare loop, links shown      %.2f\n", best[1] / best[0]);
    std::printf("DeleteFolderContents : bare loop, links not shown  %.2f\n", best[3] / best[2]);
    std::printf("links not shown : links shown                      %.2f\n", best[3] / best[1]);
    const bool empty = RemoveDirectoryW(kFolder) != FALSE;
    std::printf("%s\n", empty ? "everything is gone" : "SOMETHING IS LEFT");
    return empty ? 0 : 1;
}
