#include "shell/help.h"

#include "shell/menus.h"
#include "ui/modDialog.h"
#include "version.h"
#include "win/open_with_shell.h"

namespace shell {
namespace {

constexpr wchar_t kAuthor[] = L"Qorvenix contributors";
constexpr wchar_t kReadMeFile[] = L"\\ReadMe.txt";
constexpr wchar_t kUpdateFile[] = L"\\Update.exe";

void OpenIfThere(HWND window, const std::wstring& file) {
    if (PathFileExistsW(file.c_str())) win::OpenWithShell(window, file, L"", L"");
}

void ShowVersion(HWND window) {
    const std::wstring text = std::wstring(ui::kProductName) + L" Ver" + kVersion + L"\r\n" + kAuthor;
    ui::Inform(window, text, ui::kProductName);
}

}  // namespace

void RunHelpItem(int item, HWND window, const std::wstring& application_folder) {
    switch (item) {
        case HelpItem::ReadMe:
            OpenIfThere(window, application_folder + kReadMeFile);
            break;
        case HelpItem::HomePage:
            win::OpenWithShell(window, kHomePage, L"", win::kNoFolder);
            break;
        case HelpItem::Version:
            ShowVersion(window);
            break;
        case HelpItem::Update:
            OpenIfThere(window, application_folder + kUpdateFile);
            break;
        default:
            break;
    }
}

}  // namespace shell
