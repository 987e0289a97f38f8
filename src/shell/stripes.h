// The colour of every other row of a list.
#pragma once

#include "win/platform.h"

#include <optional>

namespace shell {

// The answer to NM_CUSTOMDRAW of a list; nothing where the control's own procedure is to answer.
std::optional<LRESULT> DrawStripes(NMLVCUSTOMDRAW& draw);

}  // namespace shell
