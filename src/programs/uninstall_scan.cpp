#include "programs/uninstall_scan.h"

#include "programs/modReg.h"
#include "win/file_icon.h"
#include "win/size_text.h"
#include "win/system_text.h"

#include <map>

namespace programs {
namespace {

// The icons of one scan. The shell takes its time for each, and many entries name the same file: Windows Installer.
class Icons {
public:
    explicit Icons(const ProgramLists& lists) : lists_(lists) {}

    // The image index for a row.
    int image(const UninstallEntry& entry) {
        const std::wstring path = IconPath(entry, probe_);
        const auto [it, is_new] = known_.try_emplace(win::LowerCase(path), ui::ListView::kNoImage);
        if (is_new && probe_.reachable(path)) it->second = add(path);
        return it->second;
    }

private:
    // The lists get the image list with the first icon of a scan.
    int add(const std::wstring& path) const {
        const int images = win::AddFileIconToImageList(lists_.icons, path, SHGFI_SMALLICON);
        if (images == 0) return ui::ListView::kNoImage;
        if (images == 1) {
            lists_.programs.set_small_images(lists_.icons);
            lists_.updates.set_small_images(lists_.icons);
        }
        return images - 1;
    }

    const ProgramLists& lists_;
    startup::FileProbe probe_;
    std::map<std::wstring, int> known_;  // by path
};

void AddRow(const ProgramLists& lists, UninstallPlace place, const UninstallEntry& entry, int image) {
    const ui::ListView& list = entry.is_update ? lists.updates : lists.programs;
    const ProgramTag tag = {place, entry.install_location && entry.install_location->empty()};
    const int row = list.add_row(entry.display_name, tag.number(), image);
    const auto fill = [&](ProgramColumn::Index column, const std::wstring& text) {
        if (!text.empty()) list.set_cell(row, column, text);
    };
    fill(ProgramColumn::Publisher, entry.publisher);
    if (entry.estimated_size) {
        const std::wstring size = win::MegabyteText(*entry.estimated_size);
        fill(ProgramColumn::Size, size);
        fill(ProgramColumn::SizeKey, win::SizeSortKey(size));
    }
    fill(ProgramColumn::InstallDate, entry.install_date);
    if (entry.install_location) fill(ProgramColumn::InstallFolder, *entry.install_location);
    fill(ProgramColumn::UninstallCommand, entry.uninstall_command);
    fill(ProgramColumn::RegistryKey, entry.key_name);
}

}  // namespace

void ScanUninstallKeys(const ProgramLists& lists, const ScanOptions& options, std::wstring_view user_sid,
                       ui::Host& host) {
    const ui::RedrawSuspender programs(lists.programs);
    const ui::RedrawSuspender updates(lists.updates);
    lists.programs.clear();
    lists.updates.clear();
    lists.programs.set_small_images(nullptr);
    lists.updates.set_small_images(nullptr);
    ImageList_RemoveAll(lists.icons);

    Icons icons(lists);
    for (const UninstallPlace place : UninstallPlaces()) {
        const UninstallKey key = FindUninstallKey(place, user_sid);
        const std::vector<std::wstring> names = EnumerateSubkeyNames(key.root, key.path);
        host.pump();
        for (const std::wstring& name : names) {
            const auto entry = ReadUninstallEntry(key.root, key.path + L"\\", name, options);
            if (!entry) continue;
            AddRow(lists, place, *entry, options.show_icons ? icons.image(*entry) : ui::ListView::kNoImage);
        }
    }
}

}  // namespace programs
