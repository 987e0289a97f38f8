#include "ui/contrast.h"

#include <algorithm>

namespace ui {
namespace {

// By Newton's method, for 0.002 to 1; the library's power function is as large as the program's smaller folders.
double FifthRoot(double number) {
    double root = 1;
    for (int step = 0; step < 20; ++step)
        root -= (root - number / (root * root * root * root)) / 5;
    return root;
}

// The light of one of the three parts of a colour, 0 to 1.
double Linear(unsigned long part) {
    const double share = static_cast<double>(part & 0xFF) / 255;
    if (share <= 0.03928) return share / 12.92;
    const double square = (share + 0.055) * (share + 0.055) / (1.055 * 1.055);
    return square * FifthRoot(square);  // the power 2.4
}

// Red stands in the lowest byte.
double Luminance(unsigned long colour) {
    return 0.2126 * Linear(colour) + 0.7152 * Linear(colour >> 8) + 0.0722 * Linear(colour >> 16);
}

}  // namespace

double ContrastRatio(unsigned long one, unsigned long other) {
    const auto [dark, light] = std::minmax({Luminance(one), Luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

}  // namespace ui
