#include "ui/contrast.h"

#include <doctest/doctest.h>

TEST_CASE("the contrast of colours is that of the guidelines, whichever is the text") {
    constexpr unsigned long kBlack = 0x000000, kWhite = 0xFFFFFF, kBlue = 0xFF0000, kRed = 0x0000FF, kGrey = 0x767676;
    constexpr unsigned long kLavender = 0xFFF0F0;
    CHECK(ui::ContrastRatio(kBlack, kWhite) == doctest::Approx(21));
    CHECK(ui::ContrastRatio(kWhite, kWhite) == doctest::Approx(1));
    CHECK(ui::ContrastRatio(kBlue, kWhite) == doctest::Approx(8.592).epsilon(0.001));
    CHECK(ui::ContrastRatio(kWhite, kRed) == doctest::Approx(3.998).epsilon(0.001));
    CHECK(ui::ContrastRatio(kGrey, kWhite) == doctest::Approx(4.542).epsilon(0.001));
    CHECK(ui::ContrastRatio(kGrey, kLavender) < ui::kReadableText);
}
