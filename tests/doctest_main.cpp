// The main function of every doctest program, and how it counts: a test case may say that it cannot run here.
#define DOCTEST_CONFIG_IMPLEMENT
#define DOCTEST_CONFIG_NO_MULTITHREADING  // the win32 thread model has no std::mutex
#include <doctest/doctest.h>

#include "support/test_key.h"
#include "support/throw_away.h"

#include <cstdio>

namespace {

const char* skipped_because = nullptr;

void Skip(const char* reason) { throw std::string(skipped_because = reason); }

class Reporter final : public doctest::ConsoleReporter {
public:
    using ConsoleReporter::ConsoleReporter;

    static inline int passed = 0, failed = 0, skipped = 0;

    void test_case_exception(const doctest::TestCaseException& exception) override {
        if (!skipped_because) ConsoleReporter::test_case_exception(exception);
    }
    // A skip within an assertion fails it, too.
    void log_assert(const doctest::AssertData& assertion) override {
        if (!skipped_because) ConsoleReporter::log_assert(assertion);
    }
    void test_case_end(const doctest::CurrentTestCaseStats& stats) override {
        if (skipped_because) {
            ++skipped;
            std::printf("skipped, because %s: %s\n", skipped_because, tc->m_name);
        } else {
            ++(stats.failure_flags == 0 ? passed : failed);
            ConsoleReporter::test_case_end(stats);
        }
        skipped_because = nullptr;
    }
    void test_run_end(const doctest::TestRunStats&) override {
        std::printf("%d passed, %d failed, %d skipped\n", passed, failed, skipped);
    }
};

REGISTER_REPORTER("counts", 0, Reporter);

}  // namespace

int main(int argc, char** argv) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);  // a crash must not swallow what was printed before
    throw_away::skip = &Skip;
    before_foreign_key = [] { REQUIRE(throw_away::Objection().empty()); };
    doctest::Context context(argc, argv);
    context.setOption("reporters", "counts");
    const int result = context.run();
    return context.shouldExit() ? result : Reporter::failed != 0;
}
