#include "shell/activity.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace shell {

void Activity::request(Request request) {
    if (close_waits_) return;
    switch (request.kind) {
        case Request::TabClick:
            tab_click_waits_ = true;
            break;
        case Request::Refresh:
            refresh_waits_ = true;
            break;
        case Request::Fill:
            fill_waits_[request.page] = true;
            break;
    }
    run_waiting();
}

bool Activity::request_close() {
    if (close_blocked()) return false;
    close_waits_ = true;
    run_waiting();
    return true;
}

bool Activity::take_next(Request& next) {
    if (std::exchange(tab_click_waits_, false)) {
        refresh_waits_ = false;  // a tab click fills the shown tab, which is all that a refresh would do
        next = {Request::TabClick};
        return true;
    }
    if (std::exchange(refresh_waits_, false)) {
        next = {Request::Refresh};
        return true;
    }
    bool* const fill = std::find(std::begin(fill_waits_), std::end(fill_waits_), true);
    if (fill == std::end(fill_waits_)) return false;
    *fill = false;
    next = {Request::Fill, static_cast<int>(fill - fill_waits_)};
    return true;
}

void Activity::run_waiting() {
    bool has_run = false;
    while (!running_) {
        if (close_waits_) {
            // The runner destroys the window here; nothing is started any more.
            running_ = true;
            runner_.close();
            return;
        }
        Request next = {};
        if (take_next(next)) {
            running_ = true;
            runner_.run(next);
            running_ = false;
            has_run = true;
        } else {
            if (has_run) runner_.settled();
            return;
        }
    }
}

Activity::Exclusive::Exclusive(Activity& activity) : activity_(activity), entered_(!activity.running_) {
    if (entered_) activity_.running_ = true;
}

Activity::Exclusive::~Exclusive() {
    if (!entered_) return;
    activity_.running_ = false;
    activity_.run_waiting();
    if (!activity_.running_) activity_.runner_.settled();
}

}  // namespace shell
