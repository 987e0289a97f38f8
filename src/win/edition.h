// Which of the two editions this program is.
#pragma once

namespace win {

// A 64-bit program sees the 64-bit programs' half of the registry by nature and the 32-bit programs' below Wow6432Node.
inline constexpr bool kIs64Bit = sizeof(void*) == 8;

}  // namespace win
