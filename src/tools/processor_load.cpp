#include "tools/processor_load.h"

#include "win/system_library.h"

#include <pdhmsg.h>

#include <algorithm>
#include <string>
#include <utility>

namespace tools {
namespace {

// Counter names are in the language of the system; their indexes are the same everywhere.
struct CounterName {
    DWORD index;
    const wchar_t* english;
};
constexpr CounterName kProcessor = {238, L"Processor"};
constexpr CounterName kProcessorTime = {6, L"% Processor Time"};

using LookupName = decltype(&PdhLookupPerfNameByIndexW);

std::wstring LocalName(LookupName lookup, const CounterName& name) {
    wchar_t text[PDH_MAX_COUNTER_NAME] = {};
    DWORD length = PDH_MAX_COUNTER_NAME;
    if (!lookup || lookup(nullptr, name.index, text, &length) != ERROR_SUCCESS || !text[0]) return name.english;
    return text;
}

}  // namespace

bool ProcessorLoad::open() {
    library_ = win::LoadSystemLibrary(L"pdh.dll");
    const HMODULE pdh = library_.get();
    const auto open_query = win::FindFunction<decltype(&PdhOpenQueryW)>(pdh, "PdhOpenQueryW");
    const auto add_counter = win::FindFunction<decltype(&PdhAddCounterW)>(pdh, "PdhAddCounterW");
    const auto lookup = win::FindFunction<LookupName>(pdh, "PdhLookupPerfNameByIndexW");
    collect_ = win::FindFunction<decltype(collect_)>(pdh, "PdhCollectQueryData");
    format_ = win::FindFunction<decltype(format_)>(pdh, "PdhGetFormattedCounterValue");
    close_query_ = win::FindFunction<decltype(close_query_)>(pdh, "PdhCloseQuery");
    if (!open_query || !add_counter || !collect_ || !format_ || !close_query_) return false;
    if (open_query(nullptr, 0, &query_) != ERROR_SUCCESS) {
        query_ = nullptr;
        return false;
    }
    const std::wstring path = L"\\" + LocalName(lookup, kProcessor) + L"(_Total)\\" + LocalName(lookup, kProcessorTime);
    return add_counter(query_, path.c_str(), 0, &counter_) == ERROR_SUCCESS;
}

std::optional<unsigned> ProcessorLoad::read() {
    if (state_ == State::Unopened) {
        state_ = State::Opened;
        if (!open()) close();
    }
    if (state_ == State::Closed || collect_(query_) != ERROR_SUCCESS) return {};
    if (std::exchange(state_, State::Running) == State::Opened) return {};
    PDH_FMT_COUNTERVALUE value = {};
    if (format_(counter_, PDH_FMT_LONG, nullptr, &value) != ERROR_SUCCESS) return {};
    if (value.CStatus != PDH_CSTATUS_VALID_DATA && value.CStatus != PDH_CSTATUS_NEW_DATA) return {};
    return static_cast<unsigned>(std::clamp(value.longValue, 0L, 100L));
}

void ProcessorLoad::close() {
    if (query_) close_query_(std::exchange(query_, nullptr));
    library_.reset();
    state_ = State::Closed;
}

}  // namespace tools
