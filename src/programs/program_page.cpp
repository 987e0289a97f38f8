#include "programs/program_page.h"

#include "programs/program_details.h"
#include "programs/program_menu.h"
#include "win/file_icon.h"

namespace programs {

ProgramPage::ProgramPage(ProgramScan& scan, bool updates) : Page(kProgramColumns), scan_(scan), updates_(updates) {
    scan_.pages[updates ? 1 : 0] = this;
}

void ProgramPage::fill() {
    if (scan_.options.show_icons && !scan_.apartment) scan_.apartment.emplace();
    if (!scan_.icons) scan_.icons = win::CreateSmallIconList();
    const ProgramLists lists = {scan_.pages[0]->list(), scan_.pages[1]->list(), scan_.icons.get()};
    ScanUninstallKeys(lists, scan_.options, scan_.user_sid, host());
}

void ProgramPage::show(int row) {
    const auto program = ProgramAt(list(), row);
    if (!program) return Page::show(row);
    host().set_status(program->name);
    const ProgramDetails details = ReadProgramDetails(program->place, program->key_name, scan_.user_sid);
    const std::wstring values[] = {details.help_link, details.url_info_about, details.help_telephone};
    host().show_details(values);
}

// "サイズ" sorts by the hidden column, whose zero-padded text is in numeric order.
int ProgramPage::sort_column(int column) const {
    return column == ProgramColumn::Size ? static_cast<int>(ProgramColumn::SizeKey) : column;
}

std::span<const ui::MenuItem> ProgramPage::menu() const { return kProgramMenu; }

bool ProgramPage::enabled(int item) const { return IsProgramItemEnabled(item, list().selected() >= 0); }

// The window stays usable while the uninstaller runs, but does not close, and no second uninstaller starts.
ui::Guard ProgramPage::guard(int item) const {
    switch (item) {
        case ProgramItem::Uninstall:
            return {.blocks_close = true};
        case ProgramItem::ForcedUninstall:
            return {.alone = true, .blocks_close = true};
        default:
            return {};
    }
}

int ProgramPage::item_of_button(int button) const {
    return button == 0 ? ProgramItem::Uninstall : ProgramItem::ForcedUninstall;
}

int ProgramPage::item_of_key(WORD key, bool control, bool shift) const {
    if (key == VK_DELETE) return ProgramItem::Uninstall;
    if (key == L'O' && control && !shift) return ProgramItem::OpenFolder;
    return Page::item_of_key(key, control, shift);
}

ui::Then ProgramPage::mnuPopItem_Click(int item) {
    const auto program = ProgramAt(list(), list().selected());
    switch (item) {
        case ProgramItem::Uninstall:
            return program && Uninstall(*program, host()) ? ui::Then::FillThis : ui::Then::Nothing;
        case ProgramItem::ForcedUninstall:
            return program && ForcedUninstall(*program, scan_.user_sid, scan_.backup, host()) ? ui::Then::FillThis
                                                                                              : ui::Then::Nothing;
        case ProgramItem::OpenFolder:
            if (program) OpenInstallFolder(*program);
            return ui::Then::Nothing;
        case ProgramItem::Refresh:
            return ui::Then::FillThis;
        default:
            return ui::Then::Nothing;
    }
}

}  // namespace programs
