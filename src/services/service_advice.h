// What a home user may do with a well-known service: one line of advice each.
#pragma once

#include <span>
#include <string_view>

namespace services {

struct ServiceAdvice {
    std::wstring_view name;  // the display name in lower case
    std::wstring_view advice;
};

// The whole table, in its order of comparison.
std::span<const ServiceAdvice> AdviceTable();

// The advice for a display name, in whatever case; never empty. Only the whole name counts, so a service whose name
// is translated gets the line that asks users for a report.
std::wstring_view LookupServiceAdvice(std::wstring_view display_name);

}  // namespace services
