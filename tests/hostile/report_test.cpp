// Single values, and the system report that shows one of them, from hostile registry values.
#include "hostile_registry.h"

#include "programs/modReg.h"
#include "support/root_override.h"
#include "support/test_key.h"
#include "support/throw_away.h"
#include "sysinfo/modSystemInfo.h"
#include "win/folders.h"

namespace {

constexpr std::uint64_t kRounds = 3000;
constexpr std::size_t kValueBytes = 256;
constexpr wchar_t kExplorer[] = L"SOFTWARE\\Microsoft\\Internet Explorer";

std::wstring Expected(const hostile::Value& value) {
    if (value.bytes.size() > kValueBytes) return {};
    if (value.type == REG_SZ) return hostile::TextOf(value.bytes);
    if (value.type != REG_DWORD) return std::wstring(programs::kUndefinedDataType);
    return std::to_wstring(hostile::NumberOf(value.bytes));
}

}  // namespace

TEST_CASE("a hostile value is a text or a number within its bound, and so it stands in the report") {
    REQUIRE_THROW_AWAY();
    const TestKey sandbox(HKEY_CURRENT_USER, L"Software\\QorvenixTest\\hostile report");
    const TestKey explorer(sandbox.get(), kExplorer);
    const RootOverride machine(HKEY_LOCAL_MACHINE, sandbox.get());
    hostile::Run("values", kRounds, [&](hostile::Source& source, std::uint64_t round) {
        const hostile::Value value = hostile::ValueFor(source, round);
        hostile::Set(explorer.get(), L"Version", value);
        const auto read = programs::ReadRegistryValue(HKEY_LOCAL_MACHINE, kExplorer, L"Version");
        const auto* const text = std::get_if<std::wstring>(&read);
        REQUIRE((text ? *text : std::to_wstring(std::get<std::uint32_t>(read))) == Expected(value));
        if (!source.once_in(50)) return;
        const std::wstring report = sysinfo::BuildSystemReport(win::SystemDirectory());
        REQUIRE(report.find(L"Internet Explorer\t" + Expected(value) + L"\r\nComCtl32.dll\t") != report.npos);
    });
}
