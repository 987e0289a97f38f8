// Start to painted window: a program against an empty window, started in turns.
//   bench_start PROGRAM    for example Q:\release\bin\Qorvenix.exe
#include "win/handle.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr wchar_t kEmptyClass[] = L"Qorvenix.Empty";
constexpr int kRounds = 9;

LRESULT CALLBACK EmptyProcedure(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcW(window, message, wide, parameter);
}

// This program itself, as the empty window.
int ShowEmptyWindow() {
    WNDCLASSW description = {};
    description.lpfnWndProc = &EmptyProcedure;
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    description.lpszClassName = kEmptyClass;
    RegisterClassW(&description);
    const HWND window = CreateWindowExW(0, kEmptyClass, L"Empty", WS_OVERLAPPEDWINDOW, 0, 0, 800, 533, nullptr, nullptr,
                                        nullptr, nullptr);
    ShowWindow(window, SW_SHOWNORMAL);
    UpdateWindow(window);
    MSG message = {};
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        DispatchMessageW(&message);
    return 0;
}

// Milliseconds until a window of the class is visible and answers, which it does after its first painting.
double TimeStart(std::wstring command, const wchar_t* window_class) {
    LARGE_INTEGER frequency, start, end;
    QueryPerformanceFrequency(&frequency);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    QueryPerformanceCounter(&start);
    if (!CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &started)) {
        return -1;
    }
    const win::Handle process(started.hProcess);
    const win::Handle thread(started.hThread);
    HWND window = nullptr;
    while (!window || !IsWindowVisible(window)) {
        Sleep(1);
        window = FindWindowW(window_class, nullptr);
    }
    SendMessageW(window, WM_NULL, 0, 0);
    QueryPerformanceCounter(&end);
    PostMessageW(window, WM_CLOSE, 0, 0);
    WaitForSingleObject(process.get(), 20'000);
    return 1000.0 * static_cast<double>(end.QuadPart - start.QuadPart) / static_cast<double>(frequency.QuadPart);
}

double Median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    if (count != 2) return 2;
    if (std::wstring_view(arguments[1]) == L"empty") return ShowEmptyWindow();
    const std::wstring empty = L"\"" + std::wstring(arguments[0]) + L"\" empty";
    const std::wstring program = L"\"" + std::wstring(arguments[1]) + L"\"";
    std::vector<double> empty_times, program_times;
    for (int round = 0; round < kRounds; ++round) {
        empty_times.push_back(TimeStart(empty, kEmptyClass));
        program_times.push_back(TimeStart(program, L"Qorvenix.frmMain"));
    }
    std::printf("empty window %.0f ms, program %.0f ms, ratio %.2f\n", Median(empty_times), Median(program_times),
                Median(program_times) / Median(empty_times));
    return 0;
}
