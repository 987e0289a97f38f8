// The lists that WMI tells, from hostile automation values: every type, broken texts, calls that fail.
#include "support/hostile.h"

#include "programs/restore_points.h"
#include "restore_points/provider.h"
#include "services/service_list.h"
#include "shell/csv_export.h"
#include "shell/process_list.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "support/wmi_double.h"
#include "win/com_ptr.h"

#include <span>

namespace {

using Names = std::span<const wchar_t* const>;
using Members = std::vector<win::Variant>;

constexpr std::uint64_t kRounds = 1000;
constexpr std::size_t kMostRows = 6;

win::Variant OfType(VARTYPE type, std::uint64_t bits) {
    win::Variant value;
    VARIANT* const held = value.put();
    held->ullVal = bits;
    held->vt = type;
    return value;
}

win::Variant Odd(const hostile::Bytes& bytes) {
    BSTR text = SysAllocStringByteLen(reinterpret_cast<const char*>(bytes.data()), static_cast<UINT>(bytes.size()));
    return OfType(VT_BSTR, reinterpret_cast<UINT_PTR>(text));
}

win::Variant Anything(hostile::Source& source) {
    constexpr VARTYPE plain[] = {VT_EMPTY, VT_NULL, VT_I1, VT_I2, VT_I4, VT_I8,   VT_UI1,  VT_UI2,  VT_UI4,
                                 VT_UI8,   VT_INT,  VT_R4, VT_R8, VT_CY, VT_DATE, VT_BOOL, VT_ERROR};
    constexpr VARTYPE empty[] = {VT_BSTR, VT_DISPATCH, VT_UNKNOWN, VT_ARRAY | VT_BSTR};
    switch (source.below(8)) {
        case 0:
            return OfType(source.pick(plain), source.next() >> source.below(64));
        case 1:
            return Odd(source.bytes(source.size()));
        case 2:
            return source.once_in(2) ? OfType(source.pick(empty), 0) : win::Variant(doubles::MakeObject().get());
        case 3:
            return win::Variant(source.once_in(2) ? L"20240229120000.000000+000" : L"Running");
        default:
            return win::Variant(source.text());
    }
}

// A row whose properties are anything, missing, or fail.
win::Variant HostileRow(hostile::Source& source, Names names) {
    const auto row = doubles::MakeObject();
    for (const wchar_t* name : names) {
        const HRESULT code = source.once_in(12) ? E_FAIL : S_OK;
        if (source.once_in(12)) continue;
        row->method(name, [code, value = Anything(source)](const auto&, auto& result) {
            result = value;
            return code;
        });
    }
    return win::Variant(row.get());
}

// The members of a query: hostile ones, at times one that is no row, and an intact row as the last.
Members HostileRows(hostile::Source& source, Names names) {
    Members members;
    for (std::size_t rows = source.below(kMostRows); members.size() < rows;)
        members.push_back(HostileRow(source, names));
    const auto control = doubles::MakeObject();
    for (const wchar_t* name : names)
        control->property(name, win::Variant(name));
    members.emplace_back(control.get());
    if (source.once_in(3)) members.insert(members.begin(), OfType(VT_I4, source.next()));
    return members;
}

constexpr const wchar_t* kService[] = {L"Caption",  L"State",       L"StartMode",  L"Description",
                                       L"PathName", L"AcceptPause", L"AcceptStop", L"Name"};
constexpr const wchar_t* kProcess[] = {L"Name", L"ProcessID", L"Description", L"ExecutablePath", L"CreationClassName"};
constexpr const wchar_t* kPoint[] = {L"CreationTime", L"Description", L"SequenceNumber"};

void CheckCells(const TestList& list) {
    TestHost host;
    for (const auto& row : list.rows()) {
        for (const std::wstring& cell : row)
            REQUIRE(cell.find(L'\0') == cell.npos);
    }
    REQUIRE(!shell::CsvOf(list.list, host).empty());
}

// A row for each member that is an object, the intact one last.
void CheckList(const TestList& list, const Members& members, const std::vector<std::wstring>& control) {
    const auto is_row = [](const win::Variant& member) { return member.get().vt == VT_DISPATCH; };
    REQUIRE(list.list.count() == std::ranges::count_if(members, is_row));
    REQUIRE(list.rows().back() == control);
    CheckCells(list);
}

}  // namespace

TEST_CASE("hostile services and processes cost their own cells") {
    const win::ComApartment apartment;
    const TestList services(services::kServiceColumns);
    const TestList processes(shell::kProcessColumns);
    TestHost host;
    Members members;
    const WmiDouble wmi([&members](const std::wstring& query) {
        return doubles::Members{query.find(L" Where ") == query.npos ? members : Members()};
    });
    hostile::Run("services and processes", kRounds, [&](hostile::Source& source, std::uint64_t) {
        members = HostileRows(source, kService);
        services::FillServiceList(services.list, host);
        CheckList(services, members, {L"Caption", {}, {}, L"Description", L"PathName", {}, {}, L"Name"});
        const services::ServiceDetail detail = services::ServiceDetailOf(services.list, 0);
        REQUIRE(!detail.advice.empty());
        REQUIRE(detail.comment.size() + 2 >= services.list.cell(0, services::ServiceColumn::Description).size());
        members = HostileRows(source, kProcess);
        shell::FillProcessList(processes.list, host);
        CheckList(processes, members,
                  {L"Name", L"ProcessID", {}, L"Description", L"ExecutablePath", L"CreationClassName", {}, {}});
    });
}

TEST_CASE("hostile restore points cost their own row") {
    const win::ComApartment apartment;
    const TestList points(programs::kRestoreColumns);
    Provider machine;
    hostile::Run("restore points", kRounds, [&](hostile::Source& source, std::uint64_t) {
        machine.points = HostileRows(source, kPoint);
        const auto control = doubles::MakeObject();
        control->property(L"CreationTime", win::Variant(L"20240229233007.000000-000"));
        machine.points.emplace_back(control.get());
        REQUIRE(programs::ListRestorePoints(points.list));
        REQUIRE(points.rows().back() == std::vector<std::wstring>{L"2024/03/01 08:30:30", {}});
        for (const std::wstring& time : points.column(0))
            REQUIRE(time.size() == 19);
        CheckCells(points);
        const std::optional<std::wstring> time = programs::RestorePointTime(source.text());
        REQUIRE((!time || time->size() == 19));
    });
}
