#include "startup/modAPI.h"

#include "startup/path.h"
#include "win/folders.h"

namespace startup {

void ShowFileProperties(const std::wstring& path) {
    // The shell of some Windows knows no extended paths.
    const std::wstring plain = win::PlainPath(path);
    SHELLEXECUTEINFOW record = {};
    record.cbSize = sizeof record;
    record.fMask = SEE_MASK_INVOKEIDLIST | SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
    record.lpVerb = L"properties";
    record.lpFile = plain.c_str();
    record.nShow = SW_SHOW;
    // Never again with another mask: where the shell has no such verb, that would start the file itself.
    ShellExecuteExW(&record);
    const win::Handle process(record.hProcess);
}

DWORD RunProgram(const std::wstring& program, const std::wstring& arguments, win::WindowStyle style) {
    std::wstring command_line = L"\"" + program + L"\"";
    if (!arguments.empty()) command_line += L" " + arguments;
    if (ParentFolder(program).empty()) return win::StartSystemProgram(program, std::move(command_line), style).id;
    return win::StartProcess(program, std::move(command_line), style).id;
}

}  // namespace startup
