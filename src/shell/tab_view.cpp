#include "shell/tab_view.h"

#include "shell/detail_area.h"
#include "ui/control.h"

namespace shell {
namespace {

bool IsShownOn(const ControlRow& row, const TabRow& tab, const ui::Page* page) {
    switch (row.area) {
        case Area::Window:
            return true;
        case Area::List:
            return row.control == tab.view && !page->appears_when_filled();
        case Area::Detail:
            return DetailArea::has(row.control, tab);
        case Area::Information:
            return !page;
    }
    return false;
}

}  // namespace

void HideView(const ControlSet& controls) {
    for (const ControlRow& row : AllControls()) {
        if (row.area != Area::Window && controls.at(row.control)) ui::SetShown(controls.at(row.control), false);
    }
}

void ShowView(const ControlSet& controls, const TabRow& tab, const ui::Page* page) {
    for (const ControlRow& row : AllControls()) {
        if (controls.at(row.control)) ui::SetShown(controls.at(row.control), IsShownOn(row, tab, page));
    }
}

}  // namespace shell
