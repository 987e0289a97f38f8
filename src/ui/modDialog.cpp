#include "ui/modDialog.h"

#include "win/system_library.h"

#include <vector>

namespace ui {
namespace {

// Room for any path that the dialogs can return.
constexpr std::size_t kPathLength = 32768;

using FileDialog = BOOL(WINAPI*)(OPENFILENAMEW*);

// The library is loaded with the first dialog: it brings the printers' along, and the window would open later. It
// stays, because a thread of it may still run.
std::wstring ChooseFile(const char* function, HWND owner, const wchar_t* title, const FileFilter& filter,
                        const wchar_t* extension, DWORD flags) {
    std::wstring filters = filter.description;
    filters.append(1, L'\0').append(filter.pattern).append(1, L'\0');
    std::vector<wchar_t> path(kPathLength);
    OPENFILENAMEW record = {};
    record.lStructSize = sizeof record;
    record.hwndOwner = owner;
    record.lpstrFilter = filters.c_str();
    record.lpstrFile = path.data();
    record.nMaxFile = static_cast<DWORD>(path.size());
    record.lpstrTitle = title;
    record.lpstrDefExt = extension;
    record.Flags = OFN_EXPLORER | OFN_NOCHANGEDIR | OFN_HIDEREADONLY | flags;
    const HMODULE library = win::LoadSystemLibrary(L"comdlg32.dll").release();
    const auto dialog = win::FindFunction<FileDialog>(library, function);
    if (!dialog || !dialog(&record)) return {};
    return path.data();
}

}  // namespace

Answer AskOkCancel(HWND owner, std::wstring_view text, std::wstring_view title, UINT icon) {
    const std::wstring shown(text);
    const std::wstring caption(title);
    const int button = MessageBoxW(owner, shown.c_str(), caption.c_str(), MB_OKCANCEL | icon);
    return button == IDOK ? Answer::Ok : Answer::Cancel;
}

void Inform(HWND owner, std::wstring_view text, std::wstring_view title) {
    const std::wstring shown(text);
    const std::wstring caption(title);
    MessageBoxW(owner, shown.c_str(), caption.c_str(), MB_OK | MB_ICONINFORMATION);
}

std::wstring ChooseFileToOpen(HWND owner, const wchar_t* title, const FileFilter& filter) {
    return ChooseFile("GetOpenFileNameW", owner, title, filter, nullptr, OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST);
}

std::wstring ChooseFileToSave(HWND owner, const wchar_t* title, const FileFilter& filter, const wchar_t* extension) {
    return ChooseFile("GetSaveFileNameW", owner, title, filter, extension, OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST);
}

}  // namespace ui
