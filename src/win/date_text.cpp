#include "win/date_text.h"

#include "win/text.h"

#include <iterator>

namespace win {
namespace {

struct Era {
    const wchar_t* name;
    int year;  // the first day
    int month;
    int day;

    int first_day() const { return (year * 100 + month) * 100 + day; }
};

// The newest first. Before 明治 the common era stands in.
constexpr Era kEras[] = {
    {L"令和", 2019, 5, 1},  {L"平成", 1989, 1, 8},  {L"昭和", 1926, 12, 25},
    {L"大正", 1912, 7, 30}, {L"明治", 1868, 1, 25}, {L"西暦", 1, 1, 1},
};

constexpr wchar_t kWeekdays[] = L"日月火水木金土";

const Era& EraOf(const SYSTEMTIME& time) {
    const int day = (time.wYear * 100 + time.wMonth) * 100 + time.wDay;
    for (const Era& era : kEras) {
        if (day >= era.first_day()) return era;
    }
    return kEras[std::size(kEras) - 1];
}

}  // namespace

std::wstring DateTimeWithEra(const SYSTEMTIME& time) {
    const Era& era = EraOf(time);
    const auto two = [](WORD number) { return PadZeros(number, 2); };
    return PadZeros(time.wYear, 4) + L"(" + era.name + ToText(time.wYear - era.year + 1) + L")/" + two(time.wMonth) +
           L"/" + two(time.wDay) + L" (" + kWeekdays[time.wDayOfWeek % 7] + L") " + two(time.wHour) + L":" +
           two(time.wMinute) + L":" + two(time.wSecond);
}

}  // namespace win
