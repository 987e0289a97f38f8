#include "programs/program_menu.h"

#include "win/platform.h"

namespace programs {

bool IsProgramItemEnabled(int index, const ProgramMenuFacts& facts) {
    switch (index) {
        case ProgramItem::Copy:
        case ProgramItem::OpenFolder:
            return facts.row_selected;
        case ProgramItem::Uninstall:
        case ProgramItem::ForcedUninstall:
            return facts.row_selected && !facts.uninstalling;
        default:
            return true;
    }
}

int ProgramItemForKey(unsigned key_code, bool control) {
    if (key_code == VK_DELETE) return ProgramItem::Uninstall;
    if (key_code == 'O' && control) return ProgramItem::OpenFolder;
    return 0;
}

}  // namespace programs
