// How a list that has not got the keys shows its selected row.
#pragma once

#include "win/platform.h"

namespace shell {

// The answer to NM_CUSTOMDRAW of a list. Windows would draw the row in the colour of a button, which on a white list,
// beside striped rows, is hardly seen.
LRESULT DrawSelection(NMLVCUSTOMDRAW& draw);

}  // namespace shell
