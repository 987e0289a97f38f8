#include "services/service_control.h"

#include "services/service_advice.h"
#include "shell/process_list.h"
#include "support/automation_double.h"
#include "support/recorder.h"
#include "support/test_host.h"
#include "support/test_list.h"

using namespace services;

namespace {

using Cells = std::vector<std::wstring>;

struct Desk {
    win::ComApartment apartment;
    TestList window{kServiceColumns};
    const ui::ListView& list = window.list;
    TestHost host;

    ~Desk() { CHECK(doubles::alive == 0); }

    std::vector<Cells> fill() {
        list.show(false);
        FillServiceList(list, host);
        CHECK(list.visible());
        return window.rows();
    }
    void choose(ServiceItem::Index item, const std::wstring& service) {
        list.select(list.find(ServiceColumn::Name, service));
        REQUIRE(IsServiceItemEnabled(item, ServiceCellsOf(list, list.selected())));
        RunServiceItem(item, list, host);
    }
    std::wstring cell(ServiceColumn::Index column, const std::wstring& service) const {
        return list.cell(list.find(ServiceColumn::Name, service), column);
    }
};

// The test service, running; its arguments tell what it does. Each has a name of its own, because a deleted one is not
// gone before its process.
class Installed {
public:
    explicit Installed(const std::wstring& arguments) : name(L"Qorvenix" + std::to_wstring(++installed_)) {
        REQUIRE_THROW_AWAY();
        const std::wstring command = L"\"" + StandIn::built(L"test_service.exe") + L"\" " + arguments;
        service_.reset(CreateServiceW(manager_.get(), name.c_str(), (L"display " + name).c_str(), SERVICE_ALL_ACCESS,
                                      SERVICE_WIN32_OWN_PROCESS, SERVICE_DEMAND_START, SERVICE_ERROR_IGNORE,
                                      command.c_str(), nullptr, nullptr, nullptr, nullptr, nullptr));
        REQUIRE(StartServiceW(service_.get(), 0, nullptr));
        REQUIRE(comes_to(SERVICE_RUNNING));
    }
    ~Installed() {
        DeleteService(service_.get());
        const win::Handle process(OpenProcess(PROCESS_TERMINATE, FALSE, status().dwProcessId));
        if (process) TerminateProcess(process.get(), 1);
    }

    SERVICE_STATUS_PROCESS status() const {
        SERVICE_STATUS_PROCESS status = {};
        DWORD needed = 0;
        QueryServiceStatusEx(service_.get(), SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status), sizeof status,
                             &needed);
        return status;
    }
    bool comes_to(DWORD state) const {
        for (int tenths = 0; tenths < 100 && status().dwCurrentState != state; ++tenths)
            Sleep(100);
        return status().dwCurrentState == state;
    }
    const std::wstring name;

private:
    static inline int installed_ = 0;

    win::ServiceHandle manager_{OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS)};
    win::ServiceHandle service_;
};

}  // namespace

TEST_CASE_FIXTURE(Desk, "a row offers what its cells allow, and tells its description and the advice for its name") {
    const std::pair<Cells, std::vector<int>> rows[] = {
        {{L"PRINT Spooler", L"開始", L"自動", L"一。二。", L"", L"-1", L"0", L""}, {1, 5, 7, 10, 11, 99}},
        {{L"TPM Base Sevices", L"停止", L"手動", L"。終わり", L"", L"0", L"-1", L""}, {1, 3, 4, 9, 11, 99}},
        {{L"Windows", L"停止", L"無効", L"。。", L"", L"", L"", L""}, {1, 9, 10, 99}},
        {{L"", L"一時停止", L"", L"\r\n", L"", L"-1", L"-1", L""}, {1, 4, 6, 7, 9, 10, 11, 99}},
        {{L"TPM Base Services", L"", L"無効", L"", L"", L"-1", L"-1", L""}, {1, 4, 5, 7, 9, 10, 99}},
    };
    const std::wstring unknown = L"判断基準：情報募集中です。作者HPにてご報告していただくと反映いたします";
    const std::pair<std::wstring, std::wstring> details[] = {
        {L"一。\r\n二。", L"判断基準：プリンタ未使用なら「無効」"},
        {L"。\r\n終わり", L"判断基準：指紋認証（暗号化）等の機能を持たないPCなら「無効」"},
        {L"。\r\n。", unknown},
        {L"", unknown},
        {L"", unknown}};
    const auto enabled = [](const std::optional<ServiceCells>& cells) {
        std::vector<int> items;
        for (const ui::MenuItem& item : kServiceMenu)
            if (IsServiceItemEnabled(item.index, cells)) items.push_back(item.index);
        return items;
    };
    for (int row = 0; const auto& [cells, items] : rows) {
        window.add_row(cells);
        CHECK(enabled(ServiceCellsOf(list, row)) == items);
        const ServiceDetail detail = ServiceDetailOf(list, row++);
        CHECK(std::pair(detail.comment, detail.advice) == details[row - 1]);
    }
    CHECK(enabled(ServiceCellsOf(list, -1)) == std::vector<int>{1, 99});
    for (const auto& [name, advice] : AdviceTable())
        CHECK(LookupServiceAdvice(name) == advice);
}

TEST_CASE_FIXTURE(Desk, "WMI's services are listed once, in its order and the program's words, and without it none") {
    const Cells words[] = {{L"Running", L"disabled", L"開始", L"無効"},
                           {L"STOPPED", L"Auto", L"停止", L"自動"},
                           {L"Paused", L"Manual", L"一時停止", L"手動"},
                           {L"Start Pending", L"Boot", L"", L""}};
    WmiDouble wmi([&](const std::wstring&) {
        doubles::Members members{{}, E_FAIL};
        for (const Cells& each : words) {
            const auto service = doubles::MakeObject({{L"DisplayName", win::Variant(each[0])},
                                                      {L"State", win::Variant(each[0])},
                                                      {L"StartMode", win::Variant(each[1])},
                                                      {L"Description", win::Variant(L"説明 " + each[0])},
                                                      {L"PathName", win::Variant(L"C:\\" + each[0])},
                                                      {L"AcceptPause", doubles::OfType(VT_BOOL, VARIANT_TRUE)},
                                                      {L"AcceptStop", doubles::OfType(VT_BOOL)}});
            members.values.emplace_back(service.get());
        }
        members.values.emplace_back(7);  // no object, no row; a value that is no text is none
        const auto odd = doubles::MakeObject();
        for (const auto& [name, type] : {std::pair(L"Caption", VT_DISPATCH),
                                         {L"State", VT_UNKNOWN},
                                         {L"StartMode", VT_NULL},
                                         {L"Description", VT_ERROR},
                                         {L"PathName", VT_EMPTY},
                                         {L"AcceptStop", VT_DISPATCH}})
            odd->property(name, doubles::OfType(static_cast<VARTYPE>(type)));
        members.values.emplace_back(odd.get());
        return members;
    });
    std::vector<Cells> rows;
    for (const Cells& each : words)
        rows.push_back({each[0], each[2], each[3], L"説明 " + each[0], L"C:\\" + each[0], L"-1", L"0", L""});
    rows.emplace_back(8);
    for (int time = 0; time < 2; ++time)
        CHECK(fill() == rows);
    CHECK(wmi.queries.back() == L"Select * From Win32_Service");
    while (wmi.steps-- > 0)
        CHECK(fill().empty());
}

TEST_CASE_FIXTURE(Desk, "what a user does to a service is done, shown in its row, and in no other") {
    const Installed service(L"pause");
    CHECK(fill().size() > 5);
    CHECK(cell(ServiceColumn::Caption, service.name) == L"display " + service.name);
    const struct {
        ServiceItem::Index item;
        const wchar_t *state, *mode;
        DWORD real_state;
    } steps[] = {{ServiceItem::Pause, L"一時停止", L"手動", SERVICE_PAUSED},
                 {ServiceItem::Resume, L"開始", L"手動", SERVICE_RUNNING},
                 {ServiceItem::Automatic, L"開始", L"自動", SERVICE_RUNNING},
                 {ServiceItem::Disabled, L"開始", L"無効", SERVICE_RUNNING},
                 {ServiceItem::Stop, L"停止", L"無効", SERVICE_STOPPED},
                 {ServiceItem::Manual, L"停止", L"手動", SERVICE_STOPPED},
                 {ServiceItem::Start, L"開始", L"手動", SERVICE_RUNNING}};
    for (const auto& step : steps) {
        CAPTURE(static_cast<int>(step.item));
        choose(step.item, service.name);
        CHECK(cell(ServiceColumn::State, service.name) == step.state);
        CHECK(cell(ServiceColumn::StartMode, service.name) == step.mode);  // as Windows told it afterwards
        CHECK(service.comes_to(step.real_state));
    }
    const auto rows = window.rows();
    CHECK(fill() == rows);  // what the service manager says
}

TEST_CASE_FIXTURE(Desk, "a restart waits alive, no longer than the service promises and the user wants") {
    const struct {
        const wchar_t *arguments, *state;
        DWORD real_state;
        bool restarts, closes;
    } waits[] = {
        {L"steps=4 step=300 hint=900", L"開始", SERVICE_RUNNING, true, false},
        {L"nostop", L"開始", SERVICE_RUNNING, false, false},
        // The stop is accepted, the start refused by a service that is still stopping.
        {L"steps=1 step=20000 hint=400 frozen", L"停止", SERVICE_STOP_PENDING, false, false},
        {L"steps=1 step=20000 hint=0", L"停止", SERVICE_STOP_PENDING, false, false},
        {L"steps=1 step=20000 hint=20000", L"開始", SERVICE_STOP_PENDING, false, true},
    };
    for (const auto& wait : waits) {
        CAPTURE(wait.arguments);
        const Installed service(wait.arguments);
        const auto rows = fill();
        const DWORD process = service.status().dwProcessId;
        int busy = 0;
        host.on_pump = [&] {
            busy += host.pointer_shows_hourglass && service.status().dwCurrentState == SERVICE_STOP_PENDING;
            list.sort(ServiceColumn::Name, busy % 2 == 0 ? ui::SortOrder::Ascending : ui::SortOrder::Descending);
            list.select(0);
            host.closing = (wait.closes && busy > 10) || host.pumps > 2000;
        };
        choose(ServiceItem::Restart, service.name);
        CHECK(cell(ServiceColumn::State, service.name) == wait.state);
        CHECK_FALSE(host.pointer_shows_hourglass);
        CHECK(service.comes_to(wait.real_state));
        CHECK((service.status().dwProcessId != process) == wait.restarts);
        CHECK((busy > 10 || !wait.restarts));  // and not once a wait
        host = TestHost();
        if (wait.restarts) CHECK(fill() == rows);
    }
}

TEST_CASE_FIXTURE(Desk, "a request is believed only when it returns 0, and a start mode only when it has a word") {
    std::int32_t answer = 0;
    int calls = 0;
    const WmiDouble wmi([&](const std::wstring&) {
        const auto service = doubles::MakeObject({{L"StartMode", win::Variant(L"Boot")}});
        service->method(L"StartService", [&](const doubles::Arguments& arguments, win::Variant& result) {
            CHECK(arguments.empty());
            ++calls;
            result = win::Variant(answer);
            return answer < 0 ? E_FAIL : S_OK;
        });
        return doubles::Members{{win::Variant(service.get())}};
    });
    window.add_row({L"other", L"other", L"手動", L"", L"", L"0", L"0", L"other"});
    window.add_row({L"service", L"停止", L"手動", L"", L"", L"-1", L"-1", L"it's"});
    const auto rows = window.rows();
    list.select(1);
    for (const std::int32_t refusal : {2, -1}) {  // access denied; the call itself fails
        answer = refusal;
        RunServiceItem(ServiceItem::Start, list, host);
    }
    answer = 0;
    CHECK(calls == 2);
    RunServiceItem(ServiceItem::Restart, list, host);  // the service manager does not know it: no start
    RunServiceItem(ServiceItem::Disabled, list, host);
    CHECK(wmi.queries.back() == L"Select * From Win32_Service Where Name=\"it's\"");
    list.select(-1);
    RunServiceItem(ServiceItem::Start, list, host);
    CHECK(calls == 2);
    CHECK(window.rows() == rows);
    list.select(1);
    RunServiceItem(ServiceItem::Start, list, host);
    CHECK(window.rows()[0] == rows[0]);
    CHECK(list.cell(1, ServiceColumn::State) == L"開始");
}

TEST_CASE_FIXTURE(Desk, "this process is listed with its number and owner") {
    const TestList processes(shell::kProcessColumns);
    shell::FillProcessList(processes.list, host);
    const int own = processes.list.find(shell::ProcessColumn::Id, std::to_wstring(GetCurrentProcessId()));
    CHECK(processes.list.cell(own, shell::ProcessColumn::Name) == L"test_services.exe");
    CHECK(processes.list.cell(own, shell::ProcessColumn::Description) == L"test_services.exe");
    wchar_t user[256] = {};
    DWORD length = 256;
    GetUserNameW(user, &length);
    CHECK(processes.list.cell(own, shell::ProcessColumn::UserName) == user);
    CHECK((processes.list.visible() && host.statuses.empty()));
}
