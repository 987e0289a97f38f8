// Dates as the program writes them, from tables of its own: the locale of the machine changes nothing.
#pragma once

#include "win/platform.h"

#include <string>

namespace win {

// "2024(令和6)/05/01 (水) 09:08:07": the year, the Japanese era with its year, month and day, the day of the week as
// `time` tells it, 24 hours.
std::wstring DateTimeWithEra(const SYSTEMTIME& time);

}  // namespace win
