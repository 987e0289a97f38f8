// Which controls a tab shows.
#pragma once

#include "shell/control_set.h"
#include "shell/tabs.h"
#include "ui/page.h"

namespace shell {

// Both change what is shown, not what is seen: that stays until it is painted, so that the list of the same tab stands
// in view while it is filled anew.

// Everything but the frame.
void HideView(const ControlSet& controls);
// Shows the controls of a tab and hides the others. A list that appears when it is filled stays hidden until then.
// `page` is null where the tab has no list.
void ShowView(const ControlSet& controls, const TabRow& tab, const ui::Page* page);

}  // namespace shell
