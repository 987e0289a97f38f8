#include "win/open_with_shell.h"

#include "win/folders.h"
#include "win/handle.h"

#include <string>

namespace win {
namespace {

// SEE_MASK_INVOKEIDLIST, SEE_MASK_NOCLOSEPROCESS, SEE_MASK_FLAG_NO_UI and SEE_MASK_UNICODE.
constexpr ULONG kMask = 0x444C;

// Without SEE_MASK_INVOKEIDLIST, which Wine takes for the promise of an item list and refuses.
constexpr ULONG kMaskWithoutItemList = 0x4440;

static_assert(sizeof(SHELLEXECUTEINFOW) == (sizeof(void*) == 8 ? 112 : 60));

std::wstring_view FolderOf(std::wstring_view file) {
    const std::size_t slash = file.rfind(L'\\');
    return file.substr(0, slash == file.npos ? 0 : slash);
}

bool Execute(SHELLEXECUTEINFOW record, ULONG mask) {
    record.fMask = mask;
    const bool opened = ShellExecuteExW(&record) != FALSE;
    const Handle process(record.hProcess);
    return opened;
}

}  // namespace

bool OpenWithShell(HWND window, std::wstring_view file, std::wstring_view parameters, std::wstring_view directory) {
    std::wstring target(file);
    if (target.find_first_of(L"\\/:") == target.npos) {
        target = FindSystemFile(file);
        if (target.empty()) {
            SetLastError(ERROR_FILE_NOT_FOUND);
            return false;
        }
    }
    const std::wstring arguments(parameters);
    const std::wstring folder(directory.empty() ? FolderOf(file) : directory);

    SHELLEXECUTEINFOW record = {};
    record.cbSize = sizeof record;
    record.hwnd = window;
    record.lpFile = target.c_str();
    record.lpParameters = arguments.c_str();
    record.lpDirectory = folder.c_str();
    record.nShow = SW_SHOW;
    return Execute(record, kMask) ||
           (GetLastError() == ERROR_INVALID_PARAMETER && Execute(record, kMaskWithoutItemList));
}

}  // namespace win
