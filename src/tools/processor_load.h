// The processors' load through the performance counters of pdh.dll.
#pragma once

#include "win/handle.h"

#include <pdh.h>

#include <optional>

namespace tools {

// Nothing is loaded or opened before the first read. Where pdh.dll, one of its functions or the counter is missing,
// every read is empty and nothing is tried again.
class ProcessorLoad {
public:
    ProcessorLoad() = default;
    ProcessorLoad(const ProcessorLoad&) = delete;
    ProcessorLoad& operator=(const ProcessorLoad&) = delete;
    ~ProcessorLoad() { close(); }

    // The share of time in which the processors were busy since the read before, 0 to 100 percent. Empty on the first
    // read, because the load is a difference of two, and when the counter has no valid value at the moment.
    std::optional<unsigned> read();

    // Makes the next read a first one: after a time without reads the difference would span all of it.
    void restart() {
        if (state_ == State::Running) state_ = State::Opened;
    }

    // PdhCloseQuery. Every later read is empty.
    void close();

private:
    bool open();

    enum class State { Unopened, Opened, Running, Closed };

    win::Module library_;
    PDH_HQUERY query_ = nullptr;
    PDH_HCOUNTER counter_ = nullptr;
    decltype(&PdhCollectQueryData) collect_ = nullptr;
    decltype(&PdhGetFormattedCounterValue) format_ = nullptr;
    decltype(&PdhCloseQuery) close_query_ = nullptr;
    State state_ = State::Unopened;
};

}  // namespace tools
