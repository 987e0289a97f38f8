#include "services/service_list.h"

#include "services/service_advice.h"
#include "win/automation.h"
#include "win/system_text.h"
#include "win/text.h"

#include <algorithm>
#include <span>

namespace services {
namespace {

struct Word {
    std::wstring_view wmi;  // lower case
    std::wstring_view shown;
};

constexpr Word kStates[] = {{L"running", kStarted}, {L"stopped", kStopped}, {L"paused", kPaused}};
constexpr Word kStartModes[] = {{L"auto", kAutomatic}, {L"manual", kManual}, {L"disabled", kDisabled}};

constexpr std::wstring_view kFullStop = L"。";
constexpr std::wstring_view kLineBreak = L"\r\n";

std::wstring_view Translate(std::span<const Word> words, std::wstring_view wmi) {
    const auto found = std::ranges::find(words, win::LowerCase(wmi), &Word::wmi);
    return found == words.end() ? std::wstring_view() : found->shown;
}

// Wine's provider has no `Caption`; on Windows the display name is the same text.
std::wstring Caption(const win::Object& service) {
    win::Variant caption;
    if (SUCCEEDED(service.invoke(L"Caption", {}, &caption))) return caption.text();
    return service.get(L"DisplayName").text();
}

// "-1" for true, "0" for false, nothing for null.
std::wstring FlagText(const win::Variant& flag) {
    const auto number = flag.number();
    return number ? win::ToText(*number) : std::wstring();
}

void AddService(const ui::ListView& list, const win::Object& service) {
    const int row = list.add_row(Caption(service));
    list.set_cell(row, ServiceColumn::State, StateText(service.get(L"State").text()));
    list.set_cell(row, ServiceColumn::StartMode, StartModeText(service.get(L"StartMode").text()));
    list.set_cell(row, ServiceColumn::Description, service.get(L"Description").text());
    list.set_cell(row, ServiceColumn::Path, service.get(L"PathName").text());
    list.set_cell(row, ServiceColumn::AcceptsPause, FlagText(service.get(L"AcceptPause")));
    list.set_cell(row, ServiceColumn::AcceptsStop, FlagText(service.get(L"AcceptStop")));
    list.set_cell(row, ServiceColumn::Name, service.get(L"Name").text());
}

}  // namespace

std::wstring_view StateText(std::wstring_view state) { return Translate(kStates, state); }

std::wstring_view StartModeText(std::wstring_view start_mode) { return Translate(kStartModes, start_mode); }

void FillServiceList(const ui::ListView& lvService, ui::Host& host) {
    {
        const ui::RedrawSuspender fill(lvService);
        lvService.clear();
        ui::PumpThrottle pump(host);
        win::QueryWmi(L"Select * From Win32_Service").for_each([&](const win::Object& service) {
            AddService(lvService, service);
            return pump();
        });
    }
    lvService.show(true);
}

std::wstring CommentText(std::wstring_view description) {
    std::wstring comment = win::ReplaceAll(description, kFullStop, std::wstring(kFullStop).append(kLineBreak));
    if (comment.ends_with(kLineBreak)) comment.resize(comment.size() - kLineBreak.size());
    return comment;
}

ServiceDetail ServiceDetailOf(const ui::ListView& lvService, int row) {
    return {CommentText(lvService.cell(row, ServiceColumn::Description)),
            std::wstring(LookupServiceAdvice(lvService.cell(row, ServiceColumn::Caption)))};
}

}  // namespace services
