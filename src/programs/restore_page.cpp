#include "programs/restore_page.h"

namespace programs {

void RestorePage::fill() {
    if (!ListRestorePoints(list())) list().clear();
}

int RestorePage::item_of_key(WORD key, bool control, bool shift) const {
    return key == VK_DELETE ? static_cast<int>(kDelete) : Page::item_of_key(key, control, shift);
}

ui::Then RestorePage::command(int item) {
    switch (item) {
        case kDelete:
            return DeleteRestorePoint(list(), host()) ? ui::Then::Refresh : ui::Then::Nothing;
        case kCreate:
            CreateRestorePoint(list(), host());
            return ui::Then::Nothing;
        default:
            return ui::Then::Nothing;
    }
}

}  // namespace programs
