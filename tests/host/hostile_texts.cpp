// The text functions on random and mutated texts, each against what it promises.
#include "startup/path.h"
#include "sysinfo/os_name.h"
#include "sysinfo/system_report.h"
#include "win/size_text.h"
#include "win/text.h"

#include "support/hostile.h"

namespace {

constexpr std::uint64_t kRounds = 20000;

// A number of any length, with both ends of its type.
std::uint64_t Number(hostile::Source& source) {
    const std::uint64_t number = source.next() >> source.below(64);
    return source.once_in(10) ? ~number : number;
}

// Of a screen or a label; 0 and less where there is none.
int Pixels(hostile::Source& source) { return static_cast<int>(source.below(source.once_in(3) ? 5 : 65537)) - 1; }

}  // namespace

TEST_CASE("parts, trimmed texts and the parts of a path come from their text, whatever is in it") {
    hostile::Run("texts", kRounds, [](hostile::Source& source, std::uint64_t) {
        const std::wstring text = source.text();
        const std::wstring_view cut = win::CutAtNul(text);
        REQUIRE((text.starts_with(cut) && cut.find(L'\0') == cut.npos));
        REQUIRE((cut.size() == text.size() || text[cut.size()] == L'\0'));
        const std::wstring_view trimmed = win::TrimBlanks(text);
        REQUIRE(text.find(trimmed) != text.npos);
        REQUIRE((trimmed.empty() || (trimmed.front() != L' ' && trimmed.back() != L' ')));
        REQUIRE(win::TrimLeadingBlanks(text).starts_with(trimmed));
        // Each part doubled, and every second one taken out again.
        const std::wstring part(1, source.once_in(2) ? L'\\' : source.unit());
        const std::wstring doubled = win::ReplaceAll(text, part, part + part);
        const auto parts = static_cast<std::size_t>(std::ranges::count(text, part[0]));
        REQUIRE(doubled.size() == text.size() + parts);
        REQUIRE(win::ReplaceAll(doubled, part + part, part) == text);
        REQUIRE(win::ReplaceAll(text, part, L"").size() == text.size() - parts);

        const std::wstring name = startup::FileNamePart(text);
        REQUIRE(name.find(L'\\') == name.npos);
        REQUIRE(
            (name == text ? startup::ParentFolder(text).empty() : startup::ParentFolder(text) + L"\\" + name == text));
        const std::wstring extension = startup::ExtensionPart(name);
        REQUIRE(extension.find(L'.') == extension.npos);
        if (name.find(L'.') != name.npos) REQUIRE(startup::BaseNamePart(text) + L"." + extension == name);
        const std::wstring second = source.text();
        REQUIRE(startup::JoinPath(text, second).size() <= text.size() + 1 + second.size());
        win::ToInteger(text);
        win::SizeSortKey(text);
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
        REQUIRE(win::TwoDecimals(number, denominator).ends_with(L"." + win::PadZeros(hundredths, 2)));
        REQUIRE(win::SizeSortKey(win::MegabyteText(static_cast<std::uint32_t>(number))).size() >= 8);
        REQUIRE(win::SizeText(number).size() >= 6);
        const auto small = static_cast<int>(number);
        REQUIRE(win::ToInteger(win::ToText(small) + L" x") == small);
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
        facts.keyboard_type = sysinfo::KeyboardTypeName(static_cast<int>(Number(source)));
        facts.keyboard_subtype = sysinfo::KeyboardSubtypeName(static_cast<int>(Number(source)));
        facts.resolution = sysinfo::Resolution(Pixels(source), static_cast<int>(source.word()));
        facts.display_inches = sysinfo::DisplayInches(Pixels(source), Pixels(source), Pixels(source), Pixels(source));
        REQUIRE(sysinfo::SystemReportText(facts).find(L"OS\t\t" + facts.os_name) != std::wstring::npos);

        std::vector<sysinfo::LabelExtent> labels(source.below(20));
        for (sysinfo::LabelExtent& label : labels)
            label = {Pixels(source) + 1, static_cast<int>(source.below(4))};
        const int distance = sysinfo::BestTabDistance(labels, Pixels(source));
        REQUIRE((distance >= 8 && distance <= 128));
    });
}
