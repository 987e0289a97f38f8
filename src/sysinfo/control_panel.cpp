#include "sysinfo/control_panel.h"

#include "startup/path.h"
#include "sysinfo/control_panel_catalogue.h"
#include "win/folders.h"
#include "win/handle.h"
#include "win/open_with_shell.h"
#include "win/system_text.h"
#include "win/text.h"

namespace sysinfo {
namespace {

constexpr wchar_t kControlPanelHost[] = L"control.exe";

constexpr std::size_t kExtensionLength = 3;

std::wstring FullPath(const Location& location, const ControlPanelFolders& folders) {
    switch (location.folder) {
        case Folder::System:
            return folders.system + L"\\" + location.name;
        case Folder::Programs:
            return folders.programs + L"\\" + location.name;
        case Folder::Windows:
            return folders.windows + L"\\" + location.name;
        case Folder::None:
            break;
    }
    return location.name;
}

void AddCatalogueRow(const ui::ListView& list, HIMAGELIST images, const CatalogueRow& row,
                     const ControlPanelFolders& folders) {
    const std::wstring file = row.file ? FullPath(row.file, folders) : std::wstring();
    if (row.file && !PathFileExistsW(file.c_str())) return;
    const int image = AddIconFromFile(images, row.icon ? FullPath(row.icon, folders) : file, row.icon_index);
    if (!row.file && !row.always && image == 0) return;
    const int index = list.add_row(row.name, 0, image == 0 ? ui::ListView::kNoImage : image - 1);
    list.set_cell(index, ControlPanelColumn::Comment, row.comment);
    list.set_cell(index, ControlPanelColumn::Path, row.path ? row.path : file + row.parameters);
}

}  // namespace

ControlPanelFolders QueryControlPanelFolders() {
    return {win::SystemDirectory(), win::GetSpecialFolderPath(CSIDL_PROGRAM_FILES), win::WindowsDirectory()};
}

void FillControlPanelList(const ui::ListView& list, HIMAGELIST images, win::VersionNumber os_number,
                          const ControlPanelFolders& folders, ui::Host& host) {
    const auto catalogue = ControlPanelCatalogue();
    const ui::RedrawSuspender fill(list, static_cast<int>(catalogue.size()));
    list.clear();
    ImageList_RemoveAll(images);
    ui::PumpThrottle pump(host);
    for (const CatalogueRow& row : catalogue) {
        if (os_number < row.versions.from || row.versions.to < os_number) continue;
        AddCatalogueRow(list, images, row, folders);
        if (!pump()) return;
    }
}

int AddIconFromFile(HIMAGELIST images, const std::wstring& file, int index) {
    win::Icon icon;
    if (ExtractIconExW(file.c_str(), index, nullptr, icon.put(), 1) != 1 || !icon) return 0;
    return ImageList_AddIcon(images, icon.get()) + 1;
}

void OpenControlPanelRow(HWND owner, std::wstring_view path) {
    const std::wstring extension = startup::ExtensionPart(path);
    const std::wstring kind = win::LowerCase(extension.substr(0, kExtensionLength));
    if (kind != L"msc" && kind != L"exe") {
        win::OpenWithShell(owner, kControlPanelHost, path, win::kNoFolder);
        return;
    }
    if (win::OpenWithShell(owner, path, {}, win::kNoFolder) || extension.size() <= kind.size()) return;
    // A path with something behind ".exe" is a file with parameters.
    const std::size_t file_length = path.size() - (extension.size() - kind.size());
    win::OpenWithShell(owner, path.substr(0, file_length), win::TrimBlanks(path.substr(file_length)), win::kNoFolder);
}

}  // namespace sysinfo
