// How well one colour can be read on another.
#pragma once

namespace ui {

// The contrast ratio of the Web Content Accessibility Guidelines, 1 to 21, of two colours as COLORREF has them. Text is
// taken to be readable from 4.5 on.
double ContrastRatio(unsigned long one, unsigned long other);

inline constexpr double kReadableText = 4.5;

}  // namespace ui
