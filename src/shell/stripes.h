// The colour of every other row of a list.
#pragma once

#include "win/platform.h"

#include <optional>

namespace shell {

class Stripes {
public:
    bool shown = false;

    // The answer to WM_NOTIFY of a list with NM_CUSTOMDRAW; nothing where the control's own procedure is to answer, and
    // to any other notification. Where the system's text could not be read on them, or the user wants a high contrast,
    // the rows keep the system's colours.
    std::optional<LRESULT> draw(LPARAM lparam);

private:
    bool readable_ = true;  // asked once a painting
};

}  // namespace shell
