#include "shell/activity.h"

#include <algorithm>
#include <iterator>

namespace shell {

void Activity::request(Request request) {
    if (close_waits_) return;
    waits_[static_cast<int>(request)] = true;
    run_waiting();
}

bool Activity::request_close() {
    if (busy()) return false;
    close_waits_ = true;
    run_waiting();
    return true;
}

void Activity::run_waiting() {
    while (!running_) {
        if (close_waits_) {
            // The runner destroys the window here; nothing is started any more.
            running_ = true;
            runner_.close();
            return;
        }
        bool* const next = std::find(std::begin(waits_), std::end(waits_), true);
        if (next == std::end(waits_)) return;
        *next = false;
        const auto request = static_cast<Request>(next - waits_);
        // A tab click fills the shown tab, which is all that a refresh would do.
        if (request == Request::TabClick) waits_[static_cast<int>(Request::Refresh)] = false;
        running_ = true;
        runner_.run(request);
        running_ = false;
    }
}

Activity::Command::Command(Activity& activity) : activity_(activity), entered_(!activity.running_) {
    if (entered_) activity_.running_ = true;
}

Activity::Command::~Command() {
    if (!entered_) return;
    activity_.running_ = false;
    activity_.run_waiting();
}

}  // namespace shell
