// The system report and the Control Panel list from hostile registry values and folders.
#include "hostile_registry.h"

#include "programs/modReg.h"
#include "support/root_override.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_key.h"
#include "support/test_list.h"
#include "support/throw_away.h"
#include "sysinfo/control_panel.h"
#include "sysinfo/modSystemInfo.h"
#include "win/com_ptr.h"
#include "win/folders.h"

namespace {

constexpr std::uint64_t kValueRounds = 3000;
constexpr std::uint64_t kRounds = 60;
constexpr std::size_t kValueBytes = 256;

constexpr wchar_t kExplorer[] = L"SOFTWARE\\Microsoft\\Internet Explorer";

const std::wstring kNoValue = L"otherwise";

// What a value is to be read as.
programs::RegistryValue Expected(const hostile::Value& value) {
    if (value.bytes.size() > kValueBytes) return kNoValue;
    if (value.type == REG_SZ) return hostile::TextOf(value.bytes);
    if (value.type != REG_DWORD) return std::wstring(programs::kUndefinedDataType);
    std::uint32_t number = 0;
    std::copy_n(value.bytes.begin(), std::min(value.bytes.size(), sizeof number),
                reinterpret_cast<std::byte*>(&number));
    return number;
}

std::wstring Shown(const programs::RegistryValue& value) {
    const auto* text = std::get_if<std::wstring>(&value);
    return text ? *text : std::to_wstring(std::get<std::uint32_t>(value));
}

}  // namespace

TEST_CASE("a hostile value is a text or a number within its bound") {
    REQUIRE_THROW_AWAY();
    const std::wstring path = L"Software\\QorvenixTest\\hostile value";
    const TestKey key(HKEY_CURRENT_USER, path);
    hostile::Run("values", kValueRounds, [&](hostile::Source& source, std::uint64_t round) {
        const hostile::Value value = hostile::ValueFor(source, round);
        hostile::Set(key.get(), L"v", value);
        const auto read = programs::ReadRegistryValue(HKEY_CURRENT_USER, path, L"v", kNoValue);
        REQUIRE(Shown(read) == Shown(Expected(value)));
    });
}

TEST_CASE("the report and the Control Panel list are complete beside hostile values") {
    REQUIRE_THROW_AWAY();
    const win::ComApartment apartment;
    const TestKey sandbox(HKEY_CURRENT_USER, L"Software\\QorvenixTest\\hostile report");
    const TestKey explorer(sandbox.get(), kExplorer);
    const RootOverride machine(HKEY_LOCAL_MACHINE, sandbox.get());
    const TestList list(sysinfo::kControlPanelColumns);
    TestHost host;
    const win::ImageList images(ImageList_Create(16, 16, ILC_COLOR32, 0, 8));
    const sysinfo::ControlPanelFolders good = {win::SystemDirectory(), L"C:\\Program Files", win::WindowsDirectory()};
    hostile::Run("reports", kRounds, [&](hostile::Source& source, std::uint64_t) {
        hostile::Value value = hostile::MakeValue(source);
        value.bytes.resize(std::min(value.bytes.size(), kValueBytes));
        hostile::Set(explorer.get(), L"Version", value);
        const std::wstring report = sysinfo::BuildSystemReport(win::SystemDirectory());
        REQUIRE(report.find(L'\0') == report.npos);
        REQUIRE(report.find(L"Internet Explorer\t" + Shown(Expected(value)) + L"\r\nComCtl32.dll\t") != report.npos);
        REQUIRE(!sysinfo::GetOSName().empty());

        sysinfo::ControlPanelFolders folders = good;
        for (std::wstring* folder : {&folders.system, &folders.programs, &folders.windows})
            if (source.once_in(2)) *folder = win::CutAtNul(source.text());
        sysinfo::FillControlPanelList(list.list, images.get(), static_cast<unsigned>(source.below(70)), folders, host);
        REQUIRE(list.list.count() >= 1);
        REQUIRE(list.list.find(sysinfo::ControlPanelColumn::Path, L"Folders") == 0);
        REQUIRE(ImageList_GetImageCount(images.get()) <= list.list.count());
    });
}
