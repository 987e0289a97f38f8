#include "shell/mod_ini.h"

#include <doctest/doctest.h>

TEST_CASE("twips and pixels do not drift at any resolution") {
    for (int pixels = -2000; pixels <= 4000; pixels += 7)
        for (const int dpi : {96, 120, 144, 192})
            REQUIRE(shell::PixelsFromTwips(shell::TwipsFromPixels(pixels, dpi), dpi) == pixels);
    CHECK(shell::TwipsFromPixels(-100, 96) == -1500);
    CHECK(shell::PixelsFromTwips(2147483647, 192) > 0);
}
