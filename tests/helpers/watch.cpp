// watch PID   watches the running program from another process: how long its window lets a message wait, and what it
// holds. PID is the number that the build machine's system knows the program's process by. Reads commands from standard
// input and answers each with one line of numbers:
//   waits       longest time since the last question that a message has waited for its answer: milliseconds less the
//               time that the program spent queueing for a processor; all milliseconds; messages sent
//   counts      handles, GDI objects, USER objects of all programs, private kilobytes
// and, to tell what is the system's own:
//   bind N      binds a WMI moniker N times in this process and tells by how much its handles have grown
//   wrap N      lets a bare edit control wrap its lines anew N times and tells by how many kilobytes this process has
//   grown
#include "support/counters.h"
#include "win/com_ptr.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace {

double Milliseconds() {
    LARGE_INTEGER now, frequency;
    QueryPerformanceCounter(&now);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(now.QuadPart) * 1000 / static_cast<double>(frequency.QuadPart);
}

// The time in milliseconds that the program's first thread was ready to run and another one had the processor.
class QueueTime {
public:
    explicit QueueTime(const wchar_t* process) {
        const std::wstring path = std::wstring(L"\\\\?\\unix\\proc\\") + process + L"\\schedstat";
        file_.reset(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    }
    double read() const {
        char text[128] = {};
        DWORD length = 0;
        SetFilePointer(file_.get(), 0, nullptr, FILE_BEGIN);
        ReadFile(file_.get(), text, sizeof text - 1, &length, nullptr);
        char* second = text;
        std::strtod(text, &second);
        return std::strtod(second, nullptr) / 1e6;
    }

private:
    win::File file_;
};

struct Waits {
    double longest_own = 0;
    double longest = 0;
    unsigned sent = 0;
};

Waits waits;
CRITICAL_SECTION waits_lock;
HWND window;

DWORD WINAPI SendAllTheTime(void* process) {
    const QueueTime queue(static_cast<const wchar_t*>(process));
    while (IsWindow(window)) {
        const double queued = queue.read();
        const double start = Milliseconds();
        DWORD_PTR answer = 0;
        SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 120000, &answer);
        const double all = Milliseconds() - start;
        const double own = all - (queue.read() - queued);
        EnterCriticalSection(&waits_lock);
        ++waits.sent;
        if (own > waits.longest_own) waits.longest_own = own;
        if (all > waits.longest) waits.longest = all;
        LeaveCriticalSection(&waits_lock);
        Sleep(2);
    }
    return 0;
}

void PrintWaits() {
    EnterCriticalSection(&waits_lock);
    const Waits seen = waits;
    waits = {};
    LeaveCriticalSection(&waits_lock);
    std::printf("%.2f %.2f %u\n", seen.longest_own, seen.longest, seen.sent);
}

// The windows, menus, icons and hooks of all programs. Wine's server keeps one table of their handles, takes the free
// places first, the latest freed before the others, and then adds to the end. So menus are made until their handles
// follow each other without a gap: then the table is full, and its length is the place of the last one. Freed in the
// order of their places, they come back in the opposite one and are not taken for the end. -1 when it does not fill.
long UserObjects() {
    constexpr std::size_t kMostMenus = 20000;
    constexpr int kWithoutGap = 32;
    std::vector<std::pair<long, win::Menu>> menus;
    for (int run = 0; run < kWithoutGap;) {
        win::Menu menu(CreateMenu());
        const long place = static_cast<long>(LOWORD(reinterpret_cast<DWORD_PTR>(menu.get())) / 2);
        run = !menus.empty() && place == menus.back().first + 1 ? run + 1 : 0;
        menus.emplace_back(place, std::move(menu));
        if (menus.size() > kMostMenus) return -1;
    }
    const long used = menus.back().first - static_cast<long>(menus.size());
    std::sort(menus.begin(), menus.end(), [](const auto& left, const auto& right) { return left.first < right.first; });
    for (auto& each : menus)
        each.second.reset();
    return used;
}

void PrintCounts() {
    DWORD process_id = 0;
    const DWORD thread_id = GetWindowThreadProcessId(window, &process_id);
    const win::Handle process(OpenProcess(PROCESS_ALL_ACCESS, FALSE, process_id));
    const win::Handle thread(OpenThread(THREAD_ALL_ACCESS, FALSE, thread_id));
    const Counters held = Count(process.get(), process_id, thread.get());
    std::printf("%ld %ld %ld %ld\n", held.handles, held.gdi_objects, UserObjects(), held.private_kilobytes);
}

void PrintBinding(int times) {
    const auto bind = [] {
        win::ComPtr<IDispatch> services;
        CoGetObject(L"winmgmts:\\\\.\\root\\default", nullptr, IID_IDispatch, services.put_void());
    };
    bind();
    const long before = CountOwn().handles;
    for (int time = 0; time < times; ++time)
        bind();
    std::printf("%ld\n", CountOwn().handles - before);
}

void PrintWrapping(int times) {
    const std::wstring line(500, L'長');
    const win::Window box(CreateWindowExW(0, L"EDIT", line.c_str(), WS_POPUP | ES_MULTILINE | ES_AUTOVSCROLL, 0, 0, 400,
                                          300, nullptr, nullptr, nullptr, nullptr));
    const long before = counters::PrivateKilobytes(GetCurrentProcess());
    for (int time = 0; time < times; ++time)
        SetWindowPos(box.get(), nullptr, 0, 0, time % 2 ? 400 : 500, 300, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    std::printf("%ld\n", counters::PrivateKilobytes(GetCurrentProcess()) - before);
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    window = FindWindowW(L"Qorvenix.frmMain", nullptr);
    if (count < 2 || !window) return 1;
    const win::ComApartment apartment;
    InitializeCriticalSection(&waits_lock);
    const win::Handle sender(CreateThread(nullptr, 0, SendAllTheTime, arguments[1], 0, nullptr));
    char line[64];
    while (std::fgets(line, sizeof line, stdin)) {
        if (std::strncmp(line, "waits", 5) == 0) PrintWaits();
        if (std::strncmp(line, "counts", 6) == 0) PrintCounts();
        if (std::strncmp(line, "bind ", 5) == 0) PrintBinding(std::atoi(line + 5));
        if (std::strncmp(line, "wrap ", 5) == 0) PrintWrapping(std::atoi(line + 5));
        std::fflush(stdout);
    }
    return 0;
}
