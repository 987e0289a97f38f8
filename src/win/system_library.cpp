#include "win/system_library.h"

namespace win {
namespace {

std::wstring FolderFrom(UINT(WINAPI* query)(LPWSTR, UINT)) {
    std::wstring folder(MAX_PATH, L'\0');
    UINT length = query(folder.data(), static_cast<UINT>(folder.size()));
    if (length > folder.size()) {
        folder.resize(length);
        length = query(folder.data(), length);
    }
    folder.resize(length);
    while (!folder.empty() && folder.back() == L'\\') folder.pop_back();
    return folder;
}

}  // namespace

const std::wstring& SystemDirectory() {
    static const std::wstring folder = FolderFrom(&GetSystemDirectoryW);
    return folder;
}

const std::wstring& WindowsDirectory() {
    static const std::wstring folder = FolderFrom(&GetSystemWindowsDirectoryW);
    return folder;
}

Module LoadSystemLibrary(const wchar_t* name) {
    return Module(LoadLibraryW((SystemDirectory() + L"\\" + name).c_str()));
}

}  // namespace win
