// The text functions on random and mutated texts, each against what it promises.
#include "programs/size_text.h"
#include "startup/path.h"
#include "sysinfo/os_name.h"
#include "sysinfo/system_report.h"
#include "win/text.h"

#include "support/hostile.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr std::uint64_t kRounds = 20000;

// A number of any length, with both ends of its type.
std::uint64_t Number(hostile::Source& source) {
    const std::uint64_t number = source.next() >> source.below(64);
    return source.once_in(10) ? ~number : number;
}

std::wstring Replaced(std::wstring text, std::wstring_view part, std::wstring_view with) {
    for (std::size_t at = 0; (at = text.find(part, at)) != text.npos; at += with.size())
        text.replace(at, part.size(), with);
    return text;
}

// Of a screen or a label; 0 and less where there is none.
int Pixels(hostile::Source& source) { return static_cast<int>(source.below(source.once_in(3) ? 5 : 65537)) - 1; }

}  // namespace

TEST_CASE("parts and trimmed texts come from their text, whatever is in it") {
    hostile::Run("texts", kRounds, [](hostile::Source& source, std::uint64_t) {
        const std::wstring text = source.text();
        const std::wstring_view cut = win::CutAtNul(text);
        REQUIRE((text.starts_with(cut) && cut.find(L'\0') == cut.npos));
        REQUIRE((cut.size() == text.size() || text[cut.size()] == L'\0'));
        const std::wstring_view trimmed = win::TrimBlanks(text);
        REQUIRE(text.find(trimmed) != text.npos);
        REQUIRE((trimmed.empty() || (trimmed.front() != L' ' && trimmed.back() != L' ')));
        REQUIRE(win::TrimLeadingBlanks(text).starts_with(trimmed));
        const std::wstring part(1 + source.below(2), source.once_in(2) ? L'\\' : source.unit());
        const std::wstring with = source.once_in(2) ? part + part : std::wstring();
        REQUIRE(win::ReplaceAll(text, part, with) == Replaced(text, part, with));
    });
}

TEST_CASE("the parts of a path make the path again") {
    hostile::Run("paths", kRounds, [](hostile::Source& source, std::uint64_t) {
        const std::wstring path = source.text();
        const std::wstring name = startup::FileNamePart(path);
        REQUIRE(name.find(L'\\') == name.npos);
        REQUIRE((name == path ? startup::ParentFolder(path) : startup::ParentFolder(path) + L"\\" + name) ==
                (name == path ? L"" : path));
        const std::wstring extension = startup::ExtensionPart(name);
        REQUIRE(extension.find(L'.') == extension.npos);
        if (name.find(L'.') != name.npos) REQUIRE(startup::BaseNamePart(path) + L"." + extension == name);
        const std::wstring second = source.text();
        REQUIRE(startup::JoinPath(path, second).size() <= path.size() + 1 + second.size());
    });
}

TEST_CASE("numbers are written and read exactly") {
    hostile::Run("numbers", kRounds, [](hostile::Source& source, std::uint64_t) {
        const std::uint64_t number = Number(source);
        REQUIRE(win::ToText(number) == std::to_wstring(number));
        REQUIRE(win::ToText(static_cast<std::int64_t>(number)) == std::to_wstring(static_cast<std::int64_t>(number)));
        const std::uint64_t denominator = 1 + (Number(source) & 0xFFFFFFFF);
        const auto exact = static_cast<unsigned __int128>(number) * 200 + denominator;
        const auto hundredths = static_cast<std::uint64_t>(exact / denominator / 2 % 100);
        const std::wstring decimals = win::TwoDecimals(number, denominator);
        REQUIRE(decimals.substr(decimals.size() - 2) == win::PadZeros(hundredths, 2));

        const auto kilobytes = static_cast<std::uint32_t>(number);
        REQUIRE(programs::SizeSortKey(programs::MegabyteText(kilobytes)).size() >= 8);
        REQUIRE(programs::SizeText(number).size() >= 6);

        const auto small = static_cast<int>(number);
        REQUIRE(win::ToInteger(win::ToText(small) + L" x") == small);
        const std::wstring text = source.text();
        win::ToInteger(text);
        programs::SizeSortKey(text);
    });
}

TEST_CASE("system names and reports of any facts") {
    hostile::Run("systems", kRounds, [](hostile::Source& source, std::uint64_t) {
        sysinfo::SystemVersion version;
        for (unsigned* field : {&version.platform, &version.major, &version.minor, &version.build})
            *field = source.once_in(2) ? static_cast<unsigned>(source.below(8)) : source.word();
        version.service_pack = source.text();
        if (source.once_in(2)) version.suite = source.word();
        if (source.once_in(2)) version.product = static_cast<unsigned>(Number(source));
        sysinfo::SystemFacts facts;
        facts.os_name = sysinfo::OSName(version);
        facts.explorer_version = source.text();
        facts.keyboard_type = sysinfo::KeyboardTypeName(static_cast<int>(Number(source)));
        facts.keyboard_subtype = sysinfo::KeyboardSubtypeName(static_cast<int>(Number(source)));
        facts.resolution = sysinfo::Resolution(Pixels(source), static_cast<int>(source.word()));
        facts.display_inches = sysinfo::DisplayInches(Pixels(source), Pixels(source), Pixels(source), Pixels(source));
        const std::wstring report = sysinfo::SystemReportText(facts);
        REQUIRE(report.find(L"Internet Explorer\t" + facts.explorer_version) != report.npos);
        REQUIRE(report.find(L"OS\t\t" + facts.os_name) != report.npos);

        std::vector<sysinfo::LabelExtent> labels(source.below(20));
        for (sysinfo::LabelExtent& label : labels)
            label = {Pixels(source) + 1, static_cast<int>(source.below(4))};
        const int distance = sysinfo::BestTabDistance(labels, Pixels(source));
        REQUIRE((distance >= 8 && distance <= 128));
    });
}
