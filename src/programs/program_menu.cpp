#include "programs/program_menu.h"

namespace programs {

bool IsProgramItemEnabled(int index, bool row_selected) {
    switch (index) {
        case ProgramItem::Copy:
        case ProgramItem::Uninstall:
        case ProgramItem::ForcedUninstall:
        case ProgramItem::OpenFolder:
            return row_selected;
        default:
            return true;
    }
}

}  // namespace programs
