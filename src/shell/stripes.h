// The colour of every other row of a list.
#pragma once

#include "win/platform.h"

#include <optional>

namespace shell {

class Stripes {
public:
    bool shown = false;

    // The answer to NM_CUSTOMDRAW of a list; nothing where the control's own procedure is to answer. Where the system's
    // text could not be read on them, or the user wants a high contrast, the rows keep the system's colours.
    std::optional<LRESULT> draw(NMLVCUSTOMDRAW& draw);

private:
    bool readable_ = true;  // asked once a painting
};

}  // namespace shell
