// Looks into the running program from another process and drives it by messages. Texts are UTF-8, a line for each
// thing, fields with tabs between; tabs, line ends and backslashes inside a text are written \t \r \n \\.
//   windows                 visible top-level windows: handle, class, process, left, top, width, height, text
//   tree [HANDLE] [FACE]    the child windows of the main window or of another: handle, class, control id, visible,
//                           enabled, focus, left, top, width, height (client pixels), parent, width and height that
//                           the text needs in the message font (or in this face), text
//   list ID                 headers, column widths, left edge of each header, the selected row; then the rows
//   row ID ROW              where a row's label lies in its list: left, top, right, bottom
//   tabs                    the selected tab; then each tab: left, top, right, bottom, width of the text, caption
//   status                  the text of the status bar
//   text ID                 the text of a control
//   type HANDLE TEXT        gives a control a text, as if it had been typed
//   wait                    until the window answers
//   close                   as the title bar does
//   end HANDLE              the same for another window
//   start PROGRAM           starts it, waits until its window has counted its programs, closes it and waits for its end
//   serve                   reads commands from standard input; each answer ends with a line "ok" or "failed"
#include "win/handle.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Words = std::vector<std::wstring>;

std::string output;

std::string Utf8(const std::wstring& text) {
    std::string bytes(text.size() * 3, '\0');
    bytes.resize(
        static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                                     bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr)));
    return bytes;
}

std::string Escaped(const std::wstring& text) {
    constexpr std::string_view kSpecial = "\t\r\n\\";
    std::string escaped;
    for (const char letter : Utf8(text)) {
        const std::size_t place = kSpecial.find(letter);
        if (place == kSpecial.npos) {
            escaped += letter;
        } else {
            escaped.append(1, '\\').append(1, "trn\\"[place]);
        }
    }
    return escaped;
}

void Line(const Words& texts) {
    for (std::size_t i = 0; i < texts.size(); ++i)
        output += (i ? "\t" : "") + Escaped(texts[i]);
    output += "\n";
}

template <class... Fields>
void Line(const Fields&... fields) {
    const auto text_of = [](const auto& field) {
        if constexpr (std::is_convertible_v<decltype(field), std::wstring>) {
            return std::wstring(field);
        } else {
            return std::to_wstring(field);
        }
    };
    Line(Words{text_of(fields)...});
}

long NumberOf(HWND window) { return static_cast<long>(reinterpret_cast<LONG_PTR>(window)); }
HWND WindowOf(const std::wstring& number) {
    return reinterpret_cast<HWND>(static_cast<LONG_PTR>(std::wcstol(number.c_str(), nullptr, 0)));
}

HWND MainWindow() { return FindWindowW(L"Qorvenix.frmMain", nullptr); }
HWND ControlOf(const Words& words) {
    return words.size() < 2 ? nullptr : GetDlgItem(MainWindow(), std::wcstol(words[1].c_str(), nullptr, 10));
}

std::wstring ClassOf(HWND window) {
    wchar_t name[128] = {};
    GetClassNameW(window, name, 128);
    return name;
}

std::wstring TextOf(HWND window) {
    DWORD_PTR length = 0;
    // A window that hangs must not hang the driver.
    if (!SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, 5000, &length)) return {};
    std::wstring text(length + 1, L'\0');
    DWORD_PTR copied = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG, 5000,
                        &copied);
    text.resize(copied);
    return text;
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
    template <class Record>
    LRESULT send(HWND window, UINT message, WPARAM wide, Record& record) {
        WriteProcessMemory(process_.get(), memory_, &record, sizeof record, nullptr);
        const LRESULT answer = SendMessageW(window, message, wide, reinterpret_cast<LPARAM>(memory_));
        ReadProcessMemory(process_.get(), memory_, &record, sizeof record, nullptr);
        return answer;
    }
    wchar_t* text_place() { return reinterpret_cast<wchar_t*>(memory_ + kSize / 2); }
    std::wstring text() {
        std::wstring text(kTextLength, L'\0');
        ReadProcessMemory(process_.get(), text_place(), text.data(), kTextLength * sizeof(wchar_t), nullptr);
        return text.substr(0, text.find(L'\0'));
    }
    static constexpr int kTextLength = 4096;

private:
    static constexpr std::size_t kSize = 4 * kTextLength;
    win::Handle process_;
    std::byte* memory_ = nullptr;
};

// What a text takes up in the system's message font, with another face if one is given.
class Ruler {
public:
    explicit Ruler(const std::wstring& face = {}) {
        NONCLIENTMETRICSW metrics = {};
        metrics.cbSize = sizeof metrics;
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        if (!face.empty()) lstrcpynW(metrics.lfMessageFont.lfFaceName, face.c_str(), LF_FACESIZE);
        font_.reset(CreateFontIndirectW(&metrics.lfMessageFont));
        SelectObject(dc_.get(), font_.get());
    }

    SIZE measure(const std::wstring& text, bool mnemonics) const {
        RECT area = {};
        DrawTextW(dc_.get(), text.c_str(), static_cast<int>(text.size()), &area,
                  DT_CALCRECT | DT_EXPANDTABS | (mnemonics ? 0U : DT_NOPREFIX));
        return {area.right, text.empty() ? 0 : area.bottom};
    }

private:
    win::Font font_;
    win::MemoryDc dc_{CreateCompatibleDC(nullptr)};
};

// ---- commands: false when there is nothing to look at -----------------------------------------------------------

BOOL CALLBACK ShowTopLevel(HWND window, LPARAM) {
    if (!IsWindowVisible(window)) return TRUE;
    DWORD process = 0;
    RECT place = {};
    GetWindowThreadProcessId(window, &process);
    GetWindowRect(window, &place);
    Line(NumberOf(window), ClassOf(window), process, place.left, place.top, place.right - place.left,
         place.bottom - place.top, TextOf(window));
    return TRUE;
}

bool Windows(const Words&) { return EnumWindows(ShowTopLevel, 0); }

struct Look {
    HWND top;
    HWND focus;
    Ruler ruler;
};

BOOL CALLBACK LookAt(HWND window, LPARAM parameter) {
    const Look& look = *reinterpret_cast<const Look*>(parameter);
    const std::wstring name = ClassOf(window);
    const std::wstring text = TextOf(window);
    const SIZE needs = look.ruler.measure(text, name == L"Button");
    RECT place = {};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, look.top, reinterpret_cast<POINT*>(&place), 2);
    Line(NumberOf(window), name, GetDlgCtrlID(window), IsWindowVisible(window) != FALSE,
         IsWindowEnabled(window) != FALSE, window == look.focus, place.left, place.top, place.right - place.left,
         place.bottom - place.top, NumberOf(GetParent(window)), needs.cx, needs.cy, text);
    return TRUE;
}

bool Tree(const Words& words) {
    const bool own = words.size() < 2 || words[1] == L"0";
    const HWND top = own ? MainWindow() : WindowOf(words[1]);
    if (!IsWindow(top)) return false;
    GUITHREADINFO thread = {};
    thread.cbSize = sizeof thread;
    GetGUIThreadInfo(GetWindowThreadProcessId(top, nullptr), &thread);
    const Look look = {top, thread.hwndFocus, Ruler(words.size() > 2 ? words[2] : L"")};
    RECT client = {};
    POINT corner = {};
    GetClientRect(top, &client);
    ClientToScreen(top, &corner);
    // The window itself comes first: its client area on the screen.
    Line(NumberOf(top), ClassOf(top), 0, IsWindowVisible(top) != FALSE, IsWindowEnabled(top) != FALSE,
         top == thread.hwndFocus, corner.x, corner.y, client.right, client.bottom, 0, 0, 0, TextOf(top));
    EnumChildWindows(top, LookAt, reinterpret_cast<LPARAM>(&look));
    return true;
}

bool List(const Words& words) {
    const HWND list = ControlOf(words);
    if (!list) return false;
    const HWND header = reinterpret_cast<HWND>(SendMessageW(list, LVM_GETHEADER, 0, 0));
    const int columns = static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
    Shared shared(list);
    Words headers, widths, edges;
    for (int column = 0; column < columns; ++column) {
        const auto place = static_cast<WPARAM>(column);
        HDITEMW item = {};
        item.mask = HDI_TEXT | HDI_WIDTH;
        item.pszText = shared.text_place();
        item.cchTextMax = Shared::kTextLength;
        shared.send(header, HDM_GETITEMW, place, item);
        headers.push_back(shared.text());
        widths.push_back(std::to_wstring(item.cxy));
        RECT area = {};
        shared.send(header, HDM_GETITEMRECT, place, area);
        edges.push_back(std::to_wstring(area.left));
    }
    Line(headers);
    Line(widths);
    Line(edges);
    Line(static_cast<int>(SendMessageW(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED)));
    const int rows = static_cast<int>(SendMessageW(list, LVM_GETITEMCOUNT, 0, 0));
    for (int row = 0; row < rows; ++row) {
        Words cells;
        for (int column = 0; column < columns; ++column) {
            LVITEMW item = {};
            item.iSubItem = column;
            item.pszText = shared.text_place();
            item.cchTextMax = Shared::kTextLength;
            shared.send(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), item);
            cells.push_back(shared.text());
        }
        Line(cells);
    }
    return true;
}

bool Row(const Words& words) {
    const HWND list = ControlOf(words);
    if (!list || words.size() < 3) return false;
    RECT place = {};
    place.left = LVIR_LABEL;
    Shared(list).send(list, LVM_GETITEMRECT, std::wcstoul(words[2].c_str(), nullptr, 10), place);
    Line(place.left, place.top, place.right, place.bottom);
    return true;
}

bool Tabs(const Words&) {
    const HWND strip = FindWindowExW(MainWindow(), nullptr, WC_TABCONTROLW, nullptr);
    if (!strip) return false;
    Shared shared(strip);
    const Ruler ruler;
    Line(static_cast<int>(SendMessageW(strip, TCM_GETCURSEL, 0, 0)));
    const int tabs = static_cast<int>(SendMessageW(strip, TCM_GETITEMCOUNT, 0, 0));
    for (int tab = 0; tab < tabs; ++tab) {
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = shared.text_place();
        item.cchTextMax = Shared::kTextLength;
        shared.send(strip, TCM_GETITEMW, static_cast<WPARAM>(tab), item);
        const std::wstring caption = shared.text();
        RECT area = {};
        shared.send(strip, TCM_GETITEMRECT, static_cast<WPARAM>(tab), area);
        Line(area.left, area.top, area.right, area.bottom, ruler.measure(caption, true).cx, caption);
    }
    return true;
}

bool Status(const Words&) {
    const HWND bar = FindWindowExW(MainWindow(), nullptr, STATUSCLASSNAMEW, nullptr);
    Line(TextOf(bar));
    return bar != nullptr;
}

bool Text(const Words& words) {
    const HWND control = ControlOf(words);
    Line(TextOf(control));
    return control != nullptr;
}

bool Type(const Words& words) {
    if (words.size() < 2) return false;
    std::wstring text;
    for (std::size_t i = 2; i < words.size(); ++i)
        text += (i > 2 ? L" " : L"") + words[i];
    return SendMessageW(WindowOf(words[1]), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str())) != 0;
}

bool Wait(const Words&) {
    DWORD_PTR answer = 0;
    return SendMessageTimeoutW(MainWindow(), WM_NULL, 0, 0, SMTO_NORMAL, 30000, &answer) != 0;
}

bool End(const Words& words) { return words.size() > 1 && PostMessageW(WindowOf(words[1]), WM_CLOSE, 0, 0) != 0; }

bool Close(const Words&) { return PostMessageW(MainWindow(), WM_CLOSE, 0, 0) != 0; }

bool Start(const Words& words) {
    if (words.size() < 2) return false;
    SHELLEXECUTEINFOW record = {};
    record.cbSize = sizeof record;
    record.fMask = SEE_MASK_NOCLOSEPROCESS;
    record.lpFile = words[1].c_str();
    record.nShow = SW_SHOWNORMAL;
    if (!ShellExecuteExW(&record)) return false;
    const win::Handle process(record.hProcess);
    const auto counted = [] {
        const HWND bar = FindWindowExW(MainWindow(), nullptr, STATUSCLASSNAMEW, nullptr);
        return bar && TextOf(bar).ends_with(L"個の項目");
    };
    for (int tenths = 0; tenths < 600 && !counted(); ++tenths)
        Sleep(100);
    if (!counted() || !Wait({}) || !Close({})) return false;
    DWORD code = 1;
    return WaitForSingleObject(process.get(), 20000) == WAIT_OBJECT_0 && GetExitCodeProcess(process.get(), &code) &&
           code == 0;
}

// ---- the commands by name ---------------------------------------------------------------------------------------

bool Run(const Words& words) {
    constexpr struct {
        const wchar_t* name;
        bool (*run)(const Words&);
    } kCommands[] = {
        {L"windows", Windows}, {L"tree", Tree}, {L"list", List}, {L"tabs", Tabs},
        {L"status", Status},   {L"text", Text}, {L"type", Type}, {L"wait", Wait},
        {L"close", Close},     {L"end", End},   {L"row", Row},   {L"start", Start},
    };
    for (const auto& command : kCommands) {
        if (!words.empty() && words[0] == command.name) return command.run(words);
    }
    return false;
}

Words Split(const std::string& line) {
    Words words;
    std::wstring text(line.size(), L'\0');
    text.resize(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, line.data(), static_cast<int>(line.size()),
                                                             text.data(), static_cast<int>(text.size()))));
    for (std::size_t from = 0; (from = text.find_first_not_of(L" \r\n", from)) != text.npos;) {
        const std::size_t end = text.find_first_of(L" \r\n", from);
        words.push_back(text.substr(from, end - from));
        if (end == text.npos) break;
        from = end;
    }
    return words;
}

void Print(const char* end) {
    output += end;
    std::fwrite(output.data(), 1, output.size(), stdout);
    std::fflush(stdout);
    output.clear();
}

int Serve() {
    char line[4096];
    while (std::fgets(line, sizeof line, stdin))
        Print(Run(Split(line)) ? "ok\n" : "failed\n");
    return 0;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
    // Else coordinates are those of 96 dpi.
    const auto aware = reinterpret_cast<BOOL(WINAPI*)()>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetProcessDPIAware")));
    if (aware) aware();
    _setmode(_fileno(stdout), _O_BINARY);
    const Words words(arguments + 1, arguments + count);
    if (words.size() == 1 && words[0] == L"serve") return Serve();
    const bool done = Run(words);
    Print("");
    return done ? 0 : 1;
}
