#include "shell/activity.h"

#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <string>
#include <utility>

using shell::Activity;

namespace {

// A window that notes what runs, in brackets, and in which other requests can arrive in the middle of a run.
struct Window : Activity::Runner {
    Activity activity{*this};
    std::string log;
    void (*during)(Window&) = nullptr;

    virtual ~Window() = default;
    void run(Activity::Request request) override {
        log += request.kind == Activity::Request::Fill ? static_cast<char>('0' + request.page) : "TR"[request.kind];
        log += '(';
        if (auto* once = std::exchange(during, nullptr)) once(*this);
        log += ')';
    }
    void settled() override { log += '.'; }
    void close() override { log += 'x'; }
};

}  // namespace

TEST_CASE_FIXTURE(Window, "what arrives during a fill runs once behind it, never inside, and no fill is made twice") {
    during = [](Window& w) {
        for (int i = 0; i < 50; ++i)
            w.activity.request({Activity::Request::TabClick});
        w.activity.request({Activity::Request::Refresh});
        w.activity.request({Activity::Request::Fill, 2});
    };
    activity.request({Activity::Request::TabClick});
    // The refresh is covered by the tab click; the rescan may concern a list that is not shown.
    CHECK(log == "T()T()2().");

    // Nor where another one of its list begins before the one that waits.
    log.clear();
    during = [](Window& w) {
        w.activity.request({Activity::Request::TabClick});
        w.activity.request({Activity::Request::Fill, 2});
        w.during = [](Window& clicked) { clicked.activity.fill_begins(2); };
    };
    activity.request({Activity::Request::Refresh});
    CHECK(log == "R()T().");
}

TEST_CASE_FIXTURE(Window, "a close during a fill is carried out behind it and nothing starts any more") {
    during = [](Window& w) {
        CHECK(w.activity.request_close());
        w.activity.request({Activity::Request::TabClick});
    };
    activity.request({Activity::Request::Refresh});
    activity.request({Activity::Request::TabClick});
    CHECK(log == "R()x");
    CHECK_FALSE(bool(Activity::Exclusive(activity)));
}

TEST_CASE_FIXTURE(Window, "a busy window refuses to close, but fills; commands hold fills and a close back") {
    {
        const Activity::CloseBlock outer(activity);
        { const Activity::CloseBlock inner(activity); }
        CHECK_FALSE(activity.request_close());
        activity.request({Activity::Request::TabClick});
    }
    {
        const Activity::Exclusive command(activity);
        REQUIRE(bool(command));
        CHECK_FALSE(bool(Activity::Exclusive(activity)));
        activity.request({Activity::Request::Refresh});
        CHECK(log == "T().");
    }
    CHECK(log == "T().R()..");
    {
        const Activity::Exclusive command(activity);
        CHECK((activity.request_close() && activity.close_waits()));
        CHECK(log == "T().R()..");
    }
    CHECK(log == "T().R()..x");
}
