// The main function of every doctest program.
#define DOCTEST_CONFIG_IMPLEMENT
#define DOCTEST_CONFIG_NO_MULTITHREADING  // the win32 thread model has no std::mutex
#include <doctest/doctest.h>

#include <cstdio>

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);  // a crash must not swallow what was printed before
    doctest::Context context(argc, argv);
    return context.run();
}
