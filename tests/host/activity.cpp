#include "shell/activity.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <string>
#include <utility>

using shell::Activity;

namespace {

// A window that notes what runs, and in which other requests can arrive in the middle of a run.
struct Window final : Activity::Runner {
    Activity activity{*this};
    std::string log;
    int depth = 0;
    int settlements = 0;
    int deepest = 0;
    void (*during)(Window&) = nullptr;

    void run(Activity::Request request) override {
        deepest = std::max(deepest, ++depth);
        log += request.kind == Activity::Request::Fill ? static_cast<char>('0' + request.page) : "TR"[request.kind];
        if (auto* once = std::exchange(during, nullptr)) once(*this);
        --depth;
    }
    void settled() override { ++settlements; }
    void close() override { log += "x"; }
};

}  // namespace

TEST_CASE("what arrives during a fill runs once behind it, and never inside") {
    Window window;
    window.during = [](Window& w) {
        for (int i = 0; i < 50; ++i)
            w.activity.request({Activity::Request::TabClick});
        w.activity.request({Activity::Request::Refresh});
        w.activity.request({Activity::Request::Fill, 2});
    };
    window.activity.request({Activity::Request::TabClick});
    // The refresh is covered by the tab click; the rescan may concern a list that is not shown.
    CHECK(window.log == "TT2");
    CHECK(window.deepest == 1);
    CHECK(window.settlements == 1);
}

TEST_CASE("a fill that waits is not made twice where another one of its list begins first") {
    Window window;
    window.during = [](Window& w) {
        w.activity.request({Activity::Request::TabClick});
        w.activity.request({Activity::Request::Fill, 2});
        w.during = [](Window& clicked) { clicked.activity.fill_begins(2); };
    };
    window.activity.request({Activity::Request::Refresh});
    CHECK(window.log == "RT");
}

TEST_CASE("a close during a fill is carried out behind it and nothing starts any more") {
    Window window;
    window.during = [](Window& w) {
        CHECK(w.activity.request_close());
        w.activity.request({Activity::Request::TabClick});
        CHECK(w.log == "R");
    };
    window.activity.request({Activity::Request::Refresh});
    window.activity.request({Activity::Request::TabClick});
    CHECK(window.log == "Rx");
}

TEST_CASE("a busy window refuses to close, but fills") {
    Window window;
    {
        const Activity::CloseBlock outer(window.activity);
        { const Activity::CloseBlock inner(window.activity); }
        CHECK_FALSE(window.activity.request_close());
        window.activity.request({Activity::Request::TabClick});
    }
    CHECK(window.log == "T");
    CHECK(window.activity.request_close());
    CHECK(window.log == "Tx");
}

TEST_CASE("commands exclude each other and hold fills and a close back until they have ended") {
    Window window;
    {
        const Activity::Exclusive command(window.activity);
        REQUIRE(bool(command));
        CHECK_FALSE(bool(Activity::Exclusive(window.activity)));
        window.activity.request({Activity::Request::TabClick});
        CHECK(window.log.empty());
    }
    CHECK(window.log == "T");
    {
        const Activity::Exclusive command(window.activity);
        CHECK(window.activity.request_close());
        CHECK(window.activity.close_waits());
        CHECK(window.log == "T");
    }
    CHECK(window.log == "Tx");

    window.log.clear();
    CHECK_FALSE(bool(Activity::Exclusive(window.activity)));
}
