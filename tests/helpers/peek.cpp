// Looks into the running program from another process. Reads commands from standard input, one a line, and answers each
// with a line of JSON: a list of records, or null when nothing was there. Without a handle the main window is meant.
//   windows         the top-level windows, each as its handle, class, control id, visible, enabled, focus, left, top,
//                   width, height, text
//   tree [HANDLE]   the same of a window (place and size are those of its client area), then of its child windows
//   list ID         selected row; then the cells of each row
//   tabs            selected tab; then each tab: left, top, right, bottom
//   wait            until the window answers
//   close [HANDLE]  as the title bar does
#include "support/throw_away.h"
#include "win/handle.h"
#include "win/system_library.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <iostream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Words = std::vector<std::string>;

nlohmann::json answer;

template <class... Fields>
void Record(const Fields&... fields) {
    answer.push_back(nlohmann::json::array({fields...}));
}

HWND MainWindow() { return FindWindowW(L"Qorvenix.frmMain", nullptr); }
HWND WindowOf(const Words& words) {
    if (words.size() < 2) return MainWindow();
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(std::strtoll(words[1].c_str(), nullptr, 10)));
}

std::string TextOf(HWND window) {
    std::wstring text(1 << 14, L'\0');
    DWORD_PTR copied = 0;
    // A window that hangs must not hang the driver.
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG, 5000,
                        &copied);
    text.resize(copied);
    return throw_away::Utf8(text);
}

// Memory of the process that owns a window, for messages that carry pointers.
class Shared {
public:
    explicit Shared(HWND owner) {
        DWORD process = 0;
        GetWindowThreadProcessId(owner, &process);
        process_.reset(OpenProcess(PROCESS_ALL_ACCESS, FALSE, process));
        memory_ = static_cast<std::byte*>(
            VirtualAllocEx(process_.get(), nullptr, kSize, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
    }
    Shared(const Shared&) = delete;
    Shared& operator=(const Shared&) = delete;
    ~Shared() { VirtualFreeEx(process_.get(), memory_, 0, MEM_RELEASE); }

    // Sends the message with a copy of the record, which then holds what the window has written.
    template <class Structure>
    void send(HWND window, UINT message, int place, Structure& record) {
        WriteProcessMemory(process_.get(), memory_, &record, sizeof record, nullptr);
        SendMessageW(window, message, static_cast<WPARAM>(place), reinterpret_cast<LPARAM>(memory_));
        ReadProcessMemory(process_.get(), memory_, &record, sizeof record, nullptr);
    }
    // The text that a message writes for a record, which is told where to.
    std::string text(HWND window, UINT message, int place, LVITEMW& record) {
        std::wstring copy(kTextLength, L'\0');
        wchar_t* const remote = record.pszText = reinterpret_cast<wchar_t*>(memory_ + kSize / 2);
        record.cchTextMax = kTextLength;
        send(window, message, place, record);
        ReadProcessMemory(process_.get(), remote, copy.data(), kTextLength * sizeof(wchar_t), nullptr);
        return throw_away::Utf8(copy.substr(0, copy.find(L'\0')));
    }

private:
    static constexpr int kTextLength = 4096;
    static constexpr std::size_t kSize = 4 * kTextLength;
    win::Handle process_;
    std::byte* memory_ = nullptr;
};

int Ask(HWND window, UINT message, WPARAM wide = 0, LPARAM parameter = 0) {
    return static_cast<int>(SendMessageW(window, message, wide, parameter));
}

// ---- commands: false when there is nothing to look at -----------------------------------------------------------

struct Look {
    HWND top;  // none: places are those on the screen
    HWND focus;
};

BOOL CALLBACK LookAt(HWND window, LPARAM parameter) {
    const Look& look = *reinterpret_cast<const Look*>(parameter);
    RECT place = {};
    if (window == look.top) {
        GetClientRect(window, &place);
        MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&place), 2);
    } else {
        GetWindowRect(window, &place);
        MapWindowPoints(nullptr, look.top, reinterpret_cast<POINT*>(&place), 2);
    }
    char name[128] = {};
    GetClassNameA(window, name, 128);
    Record(reinterpret_cast<LONG_PTR>(window), name, GetDlgCtrlID(window), IsWindowVisible(window) != FALSE,
           IsWindowEnabled(window) != FALSE, window == look.focus, place.left, place.top, place.right - place.left,
           place.bottom - place.top, TextOf(window));
    return TRUE;
}

bool Windows(const Words&) {
    Look look = {};
    return EnumWindows(LookAt, reinterpret_cast<LPARAM>(&look)) != FALSE;
}

bool Tree(const Words& words) {
    const HWND top = WindowOf(words);
    if (!IsWindow(top)) return false;
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    GetGUIThreadInfo(GetWindowThreadProcessId(top, nullptr), &thread);
    const Look look = {top, thread.hwndFocus};
    const auto parameter = reinterpret_cast<LPARAM>(&look);
    LookAt(top, parameter);
    EnumChildWindows(top, LookAt, parameter);
    return true;
}

bool List(const Words& words) {
    const HWND list = words.size() < 2 ? nullptr : GetDlgItem(MainWindow(), std::atoi(words[1].c_str()));
    if (!list) return false;
    const int columns = Header_GetItemCount(ListView_GetHeader(list));
    Shared shared(list);
    Record(Ask(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED));
    for (int row = 0, rows = Ask(list, LVM_GETITEMCOUNT); row < rows; ++row) {
        std::vector<std::string> cells;
        for (int column = 0; column < columns; ++column) {
            LVITEMW item = {};
            item.iSubItem = column;
            cells.push_back(shared.text(list, LVM_GETITEMTEXTW, row, item));
        }
        answer.emplace_back(cells);
    }
    return true;
}

bool Tabs(const Words&) {
    const HWND strip = FindWindowExW(MainWindow(), nullptr, WC_TABCONTROLW, nullptr);
    if (!strip) return false;
    Shared shared(strip);
    Record(Ask(strip, TCM_GETCURSEL));
    for (int tab = 0, tabs = Ask(strip, TCM_GETITEMCOUNT); tab < tabs; ++tab) {
        RECT area = {};
        shared.send(strip, TCM_GETITEMRECT, tab, area);
        Record(area.left, area.top, area.right, area.bottom);
    }
    return true;
}

bool Wait(const Words&) {
    DWORD_PTR result = 0;
    return SendMessageTimeoutW(MainWindow(), WM_NULL, 0, 0, SMTO_NORMAL, 30000, &result) != 0;
}

bool Close(const Words& words) { return PostMessageW(WindowOf(words), WM_CLOSE, 0, 0) != 0; }

}  // namespace

int wmain() {
    // Else coordinates are those of 96 dpi.
    const auto aware = win::FindFunction<BOOL(WINAPI*)()>(GetModuleHandleW(L"user32.dll"), "SetProcessDPIAware");
    if (aware) aware();
    const std::map<std::string, bool (*)(const Words&)> commands = {
        {"windows", Windows}, {"tree", Tree}, {"list", List}, {"tabs", Tabs}, {"wait", Wait}, {"close", Close}};
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream stream(line);
        const Words words{std::istream_iterator<std::string>(stream), {}};
        answer = nlohmann::json::array();
        std::cout << (commands.at(words.at(0))(words) ? answer : nlohmann::json()) << std::endl;
    }
    return 0;
}
