// How benchmarks measure and what they print: one line a result, which table.py puts into the table.
#pragma once

#include "win/platform.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string_view>
#include <vector>

namespace bench {

// A small run only shows that everything works and that both sides do the same; its times tell nothing.
inline bool small = false;
inline bool failed = false;

// To be called first: "--small" is the argument of a small run.
inline void Begin(int count, wchar_t** arguments) {
    setvbuf(stdout, nullptr, _IONBF, 0);
    small = count > 1 && std::wstring_view(arguments[1]) == L"--small";
}

// The exit code.
inline int End() { return failed ? 1 : 0; }

// What has to be so in a small run, too.
inline void Expect(bool holds, const char* what) {
    if (holds) return;
    failed = true;
    std::printf("WRONG: %s\n", what);
}

inline std::vector<int> Sizes() { return small ? std::vector{30} : std::vector{100, 1000, 10000}; }

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

inline double Median(std::vector<double> times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

// The product's way, the bare loop that makes the same Windows calls and nothing else, and, where that tells
// something, the loop without what it says to the list.
struct Ways {
    std::function<void()> product;
    std::function<void()> bare;
    std::function<void()> reading = {};
    std::function<void()> prepare = {};  // comes before each of them, and is not timed
};

// The goal for a fill of this size: at most so many times the bare loop. 0 is none.
inline double FillGoal(int entries) { return entries == 1000 ? 1.2 : 0; }

// Runs the ways in turns, so that what else this machine does disturbs all alike, and prints the medians. The first
// round is not counted. The table shows how many times the bare loop it is ("ratio") or how much longer ("more").
inline void Compare(const char* what, int entries, int rounds, const Ways& ways, double goal = 0,
                    const char* kind = "ratio") {
    const std::function<void()>* const each[] = {&ways.product, &ways.bare, &ways.reading};
    std::vector<double> times[3];
    for (int round = 0; round <= (small ? 1 : rounds); ++round) {
        for (int way = 0; way < 3; ++way) {
            if (*each[way] && ways.prepare) ways.prepare();
            const double time = *each[way] ? Once(*each[way]) : 0;
            if (round > 0) times[way].push_back(time);
        }
    }
    std::printf("result\t%s\t%d\tms\t%.3f\t%.3f\t%.3f\t%s\t%.2f\n", what, entries, Median(times[0]), Median(times[1]),
                Median(times[2]), kind, goal);
}

}  // namespace bench
