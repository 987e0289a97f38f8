#include "services/service_list.h"

#include "service_row_double.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "support/wmi_double.h"

#include <doctest/doctest.h>

#include <map>

namespace {

using Cells = std::vector<std::wstring>;

struct Fixture {
    win::ComApartment apartment;
    TestList window{services::kServiceColumns};
    TestHost host;

    ~Fixture() { CHECK(doubles::alive == 0); }

    std::vector<Cells> fill() {
        window.list.show(false);
        services::FillServiceList(window.list, host);
        CHECK(window.list.visible());
        return window.rows();
    }
};

doubles::Members Rows(const std::vector<ServiceRow>& rows) {
    doubles::Members members;
    for (const ServiceRow& row : rows)
        members.values.emplace_back(MakeService(row).get());
    return members;
}

std::map<std::wstring, ENUM_SERVICE_STATUSW> ServicesOfTheManager(std::vector<std::byte>& buffer) {
    const win::ServiceHandle manager(OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS));
    buffer.resize(256 * 1024);
    auto* entries = reinterpret_cast<ENUM_SERVICE_STATUSW*>(buffer.data());
    DWORD more = 0;
    DWORD count = 0;
    REQUIRE(EnumServicesStatusW(manager.get(), SERVICE_WIN32 | SERVICE_DRIVER, SERVICE_STATE_ALL, entries,
                                static_cast<DWORD>(buffer.size()), &more, &count, nullptr));
    std::map<std::wstring, ENUM_SERVICE_STATUSW> services;
    for (DWORD index = 0; index < count; ++index)
        services[entries[index].lpServiceName] = entries[index];
    return services;
}

}  // namespace

TEST_CASE_FIXTURE(Fixture, "the services of this computer, as the service manager knows them") {
    const auto rows = fill();
    std::vector<std::byte> buffer;
    const auto real = ServicesOfTheManager(buffer);
    CHECK(real.size() > 5);
    CHECK(rows.size() == real.size());
    for (const Cells& cells : rows) {
        const auto found = real.find(cells[services::ServiceColumn::Name]);
        REQUIRE(found != real.end());
        CHECK(cells[services::ServiceColumn::Caption] == found->second.lpDisplayName);
        const DWORD state = found->second.ServiceStatus.dwCurrentState;
        CHECK((cells[services::ServiceColumn::State] == services::kStarted) == (state == SERVICE_RUNNING));
        CHECK((cells[services::ServiceColumn::State] == services::kStopped) == (state == SERVICE_STOPPED));
        const bool stops = (found->second.ServiceStatus.dwControlsAccepted & SERVICE_ACCEPT_STOP) != 0;
        CHECK(cells[services::ServiceColumn::AcceptsStop] == (stops ? L"-1" : L"0"));
        CHECK_FALSE(cells[services::ServiceColumn::StartMode].empty());
    }
}

TEST_CASE_FIXTURE(Fixture, "every property goes to its cell, in WMI's order") {
    const WmiDouble wmi([](const std::wstring&) {
        return Rows({{L"Zeta", L"Running", L"Auto", L"説明。", L"C:\\z.exe", true, false, L"z"},
                     {L"alpha", L"STOPPED", L"Manual", L"", L"", false, true, L"a"},
                     {L"beta", L"Paused", L"disabled", L"", L"", true, true, L"b"},
                     {L"gamma", L"Start Pending", L"Boot", L"", L"", false, false, L"g"},
                     {L"delta", L"Unknown", L"System", L"", L"", false, false, L"d"}});
    });
    CHECK(fill() == std::vector<Cells>{{L"Zeta", L"開始", L"自動", L"説明。", L"C:\\z.exe", L"-1", L"0", L"z"},
                                       {L"alpha", L"停止", L"手動", L"", L"", L"0", L"-1", L"a"},
                                       {L"beta", L"一時停止", L"無効", L"", L"", L"-1", L"-1", L"b"},
                                       {L"gamma", L"", L"", L"", L"", L"0", L"0", L"g"},
                                       {L"delta", L"", L"", L"", L"", L"0", L"0", L"d"}});
    CHECK(wmi.queries == std::vector<std::wstring>{L"Select * From Win32_Service"});
    CHECK(fill().size() == 5);  // and not ten
}

TEST_CASE_FIXTURE(Fixture, "what WMI cannot tell costs its cell only") {
    const std::wstring long_text(30000, L'あ');
    const WmiDouble wmi([&](const std::wstring&) {
        doubles::Members members = Rows({{L"first", L"Running", L"Auto", long_text, L"", true, true, L"1"}});
        auto nulls = doubles::MakeObject();
        for (const wchar_t* name :
             {L"Caption", L"State", L"StartMode", L"Description", L"PathName", L"AcceptPause", L"AcceptStop"}) {
            nulls->property(name, doubles::Null());
        }
        nulls->property(L"Name", win::Variant(L"nulls"));
        members.values.emplace_back(nulls.get());
        members.values.emplace_back(static_cast<IDispatch*>(nullptr));
        auto bare = doubles::MakeObject();
        bare->property(L"DisplayName", win::Variant(L"without a caption"));
        members.values.emplace_back(bare.get());
        members.end = E_FAIL;
        return members;
    });
    CHECK(fill() == std::vector<Cells>{{L"first", L"開始", L"自動", long_text, L"", L"-1", L"-1", L"1"},
                                       {L"", L"", L"", L"", L"", L"", L"", L"nulls"},
                                       {L"without a caption", L"", L"", L"", L"", L"", L"", L""}});
}

TEST_CASE_FIXTURE(Fixture, "without WMI the list is empty and shown") {
    WmiDouble wmi([](const std::wstring&) { return Rows({{L"service"}}); });
    CHECK(fill().size() == 1);
    SUBCASE("no locator") { wmi.exists = false; }
    SUBCASE("no connection") { wmi.connects = false; }
    SUBCASE("no query") { wmi.takes_queries = false; }
    CHECK(fill().empty());
}

TEST_CASE("a description is shown with one sentence a line") {
    CHECK(services::CommentText(L"一つ目。二つ目。") == L"一つ目。\r\n二つ目。");
    CHECK(services::CommentText(L"一つ目。終わり") == L"一つ目。\r\n終わり");
    CHECK(services::CommentText(L"。。") == L"。\r\n。");
    CHECK(services::CommentText(L"plain\r\n\r\n") == L"plain\r\n");
    CHECK(services::CommentText(L"").empty());
}
