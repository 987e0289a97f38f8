#include "ui/drop_files.h"

#include "win/system_library.h"

namespace ui {
namespace {

constexpr DWORD kAllow = 1;  // MSGFLT_ADD and MSGFLT_ALLOW

// The messages by which a drop arrives. The last one has no name: it carries the list of files.
constexpr UINT kDropMessages[] = {WM_DROPFILES, WM_COPYDATA, 0x0049};

using DropHandle = win::Unique<win::NullTraits<HDROP, &::DragFinish>>;

}  // namespace

void AllowDrops(HWND window) {
    DragAcceptFiles(window, TRUE);
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    // Windows 7 has it for one window, Vista for the whole process.
    const auto allow_window =
        win::FindFunction<BOOL(WINAPI*)(HWND, UINT, DWORD, void*)>(user, "ChangeWindowMessageFilterEx");
    const auto allow_process = win::FindFunction<BOOL(WINAPI*)(UINT, DWORD)>(user, "ChangeWindowMessageFilter");
    for (const UINT message : kDropMessages) {
        if (allow_window) {
            allow_window(window, message, kAllow, nullptr);
        } else if (allow_process) {
            allow_process(message, kAllow);
        }
    }
}

std::wstring TakeFirstDroppedFile(WPARAM drop) {
    const DropHandle files(reinterpret_cast<HDROP>(drop));
    const UINT length = DragQueryFileW(files.get(), 0, nullptr, 0);
    if (length == 0) return {};
    std::wstring path(length + 1, L'\0');
    path.resize(DragQueryFileW(files.get(), 0, path.data(), length + 1));
    return path;
}

}  // namespace ui
