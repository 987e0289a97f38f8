// Start to painted window: the program, an empty window and a window that only holds the same controls, in turns.
//   bench_start [--small] PROGRAM LOOK    LOOK names the look of the controls that is switched on
//
// With entries under the Uninstall key, the empty window gets the time of a bare scan of them on top.
#include "bare_programs.h"
#include "results.h"

#include "../tests/support/test_list.h"
#include "win/system_text.h"

#include <string>

namespace {

constexpr int kRounds = 15;

// Milliseconds until a window of the class is visible and answers, which it does after its first painting.
double TimeStart(std::wstring command, const wchar_t* window_class) {
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    HWND window = nullptr;
    const double time = bench::Once([&] {
        if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &started))
            return;
        while (!window || !IsWindowVisible(window)) {
            if (WaitForSingleObject(started.hProcess, 1) != WAIT_TIMEOUT) return;
            window = FindWindowW(window_class, nullptr);
        }
        SendMessageW(window, WM_NULL, 0, 0);
    });
    const win::Handle process(started.hProcess);
    const win::Handle thread(started.hThread);
    bench::Expect(window != nullptr, "a window at the end of a start");
    PostMessageW(window, WM_CLOSE, 0, 0);
    WaitForSingleObject(process.get(), 20'000);
    return time;
}

double TimeScan() {
    const TestList programs(programs::kProgramColumns);
    const TestList updates(programs::kProgramColumns);
    return bench::Once([&] { bench::ScanBare(&programs.list, &updates.list); });
}

// Another program of the folder that this one lies in.
std::wstring Beside(const std::wstring& path, const wchar_t* name) {
    return L"\"" + path.substr(0, path.rfind(L'\\') + 1) + name + L"\"";
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    bench::Begin(count, arguments);
    if (count != (bench::small ? 4 : 3)) return 2;
    const std::wstring program = L"\"" + std::wstring(arguments[count - 2]) + L"\"";
    const std::string look = win::ToAnsi(arguments[count - 1]);
    const std::wstring empty = Beside(arguments[0], L"bench_empty_window.exe");
    const std::wstring controls = Beside(arguments[0], L"bench_bare_window.exe");
    const int entries = static_cast<int>(bench::EntryNames().size());

    std::vector<double> empty_times, controls_times, program_times, scan_times;
    for (int round = 0; round <= (bench::small ? 1 : kRounds); ++round) {
        const double times[] = {TimeStart(empty, L"Qorvenix.Empty"), TimeStart(controls, L"Qorvenix.Bare"),
                                TimeStart(program, L"Qorvenix.frmMain"), TimeScan()};
        if (round == 0) continue;  // reads everything from the disk
        empty_times.push_back(times[0]);
        controls_times.push_back(times[1]);
        program_times.push_back(times[2]);
        scan_times.push_back(times[3]);
    }
    const double scan = bench::Median(scan_times);
    const double started = bench::Median(program_times);
    const bool many = entries >= 100;
    std::printf("result\tstart, %s\t%d\tms\t%.3f\t%.3f\t0\tratio\t%.1f\n", look.c_str(), entries, started,
                bench::Median(empty_times) + (many ? scan : 0), many ? 1.3 : 1.5);
    std::printf("result\tthe same against bare controls\t%d\tms\t%.3f\t%.3f\t0\tratio\t0\n", entries, started,
                bench::Median(controls_times) + (many ? scan : 0));
    return bench::End();
}
