// Emptying a folder of 100,000 small files against bare loops: one of the Windows calls that find and delete, one that
// also makes the calls with which links are told from files where the volume does not. bench_temp_delete [files]
#include "../tests/support/counters.h"
#include "../tests/support/host_link.h"
#include "../tests/support/test_host.h"

#include "tools/modFile.h"
#include "tools/real_path.h"
#include "win/text.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace {

constexpr wchar_t kFolder[] = L"C:\\bench temp";
constexpr int kRounds = 3;

double Milliseconds() {
    LARGE_INTEGER frequency = {};
    LARGE_INTEGER now = {};
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&now);
    return 1000.0 * static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
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

void BareLoop(bool look_for_links) {
    using FinalPath = DWORD(WINAPI*)(HANDLE, LPWSTR, DWORD, DWORD);
    const auto final_path =
        win::FindFunction<FinalPath>(GetModuleHandleW(L"kernel32.dll"), "GetFinalPathNameByHandleW");
    const std::wstring folder = tools::Extended(kFolder) + L"\\";
    WIN32_FIND_DATAW entry = {};
    const win::FindHandle find(FindFirstFileW((folder + L"*.*").c_str(), &entry));
    do {
        const std::wstring path = folder + entry.cFileName;
        if (look_for_links) {
            wchar_t real[MAX_PATH] = {};
            const win::File file(CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES,
                                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                             OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
            if (final_path(file.get(), real, MAX_PATH, 0) == 0) continue;
        }
        DeleteFileW(path.c_str());
    } while (FindNextFileW(find.get(), &entry));
}

struct Way {
    const char* name;
    void (*run)();
};

constexpr Way kWays[] = {
    {"find and delete", [] { BareLoop(false); }},
    {"find, look for links and delete", [] { BareLoop(true); }},
    {"DeleteFolderContents",
     [] {
         TestHost host;
         host.on_pump = [] {
             MSG message;
             while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
                 DispatchMessageW(&message);
         };
         tools::DeleteFolderContents(kFolder, L"*.*", host);
     }},
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
    double medians[std::size(kWays)] = {};
    double times[std::size(kWays)][kRounds] = {};
    for (int round = 0; round < kRounds; ++round) {
        for (std::size_t way = 0; way < std::size(kWays); ++way) {
            if (!MakeFiles(files)) return 1;
            const Counters before = CountOwn();
            const double start = Milliseconds();
            kWays[way].run();
            times[way][round] = Milliseconds() - start;
            const Counters after = CountOwn();
            std::printf("%-32s %8.0f ms   handles %+ld   private memory %+ld KB\n", kWays[way].name, times[way][round],
                        after.handles - before.handles, after.private_kilobytes - before.private_kilobytes);
        }
    }
    for (std::size_t way = 0; way < std::size(kWays); ++way) {
        std::nth_element(times[way], times[way] + kRounds / 2, times[way] + kRounds);
        medians[way] = times[way][kRounds / 2];
    }
    const bool marked = tools::VolumeMarksLinks(kFolder);
    std::printf("\nmedians of %d rounds with %d files; links %s on this volume\n", kRounds, files,
                marked ? "show" : "do not show");
    for (std::size_t way = 0; way + 1 < std::size(kWays); ++way) {
        std::printf("DeleteFolderContents : %-32s %.2f\n", kWays[way].name, medians[2] / medians[way]);
    }
    const bool empty = RemoveDirectoryW(kFolder) != FALSE;
    std::printf("%s\n", empty ? "everything is gone" : "SOMETHING IS LEFT");
    return empty ? 0 : 1;
}
