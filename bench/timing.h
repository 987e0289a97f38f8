// How long work takes, in milliseconds.
#pragma once

#include "win/platform.h"

#include <algorithm>

inline double Milliseconds() {
    LARGE_INTEGER frequency = {}, now = {};
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&now);
    return 1000.0 * static_cast<double>(now.QuadPart) / static_cast<double>(frequency.QuadPart);
}

template <class Work>
double Once(Work&& work) {
    const double start = Milliseconds();
    work();
    return Milliseconds() - start;
}

// The best of several runs: other programs only ever add to a time.
template <class Work>
double BestOf(int runs, Work&& work) {
    double best = Once(work);
    for (int run = 1; run < runs; ++run)
        best = std::min(best, Once(work));
    return best;
}
