#include "ui/clipboard.h"

#include "win/handle.h"

#include <algorithm>

namespace ui {
namespace {

struct OpenedClipboard {
    explicit OpenedClipboard(HWND owner) : opened(OpenClipboard(owner) != FALSE) {}
    OpenedClipboard(const OpenedClipboard&) = delete;
    OpenedClipboard& operator=(const OpenedClipboard&) = delete;
    ~OpenedClipboard() {
        if (opened) CloseClipboard();
    }
    bool opened;
};

}  // namespace

bool CopyText(HWND owner, std::wstring_view text) {
    win::GlobalMemory memory(GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t)));
    if (!memory) return false;
    auto* const target = static_cast<wchar_t*>(GlobalLock(memory.get()));
    if (!target) return false;
    *std::copy(text.begin(), text.end(), target) = L'\0';
    GlobalUnlock(memory.get());

    const OpenedClipboard clipboard(owner);
    if (!clipboard.opened || !EmptyClipboard()) return false;
    if (!SetClipboardData(CF_UNICODETEXT, memory.get())) return false;
    static_cast<void>(memory.release());  // the clipboard owns it now
    return true;
}

}  // namespace ui
