// The lists that WMI tells, from hostile automation values: every type, broken texts, calls that fail.
#include "support/hostile.h"

#include "programs/restore_points.h"
#include "services/service_list.h"
#include "shell/csv_export.h"
#include "shell/process_list.h"
#include "support/moniker_double.h"
#include "support/show.h"
#include "support/test_host.h"
#include "support/test_list.h"
#include "support/wmi_double.h"
#include "win/com_ptr.h"

#include <limits>

namespace {

using Rows = std::vector<std::vector<std::wstring>>;

constexpr std::uint64_t kRounds = 1000;
constexpr std::size_t kMostRows = 6;

win::Variant OfType(VARTYPE type, std::uint64_t bits) {
    win::Variant value;
    VARIANT* const held = value.put();
    held->ullVal = bits;
    held->vt = type;
    return value;
}

win::Variant Bytes(const hostile::Bytes& bytes) {
    win::Variant value;
    VARIANT* const held = value.put();
    held->bstrVal = SysAllocStringByteLen(reinterpret_cast<const char*>(bytes.data()), static_cast<UINT>(bytes.size()));
    held->vt = VT_BSTR;
    return value;
}

win::Variant Texts(hostile::Source& source) {
    win::Variant value;
    SAFEARRAY* const array = SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(source.below(3)));
    VARIANT* const held = value.put();
    held->parray = array;
    held->vt = VT_ARRAY | VT_BSTR;
    return value;
}

win::Variant Anything(hostile::Source& source) {
    constexpr VARTYPE plain[] = {VT_EMPTY, VT_NULL, VT_I1, VT_I2, VT_I4, VT_I8,   VT_UI1,  VT_UI2,  VT_UI4,
                                 VT_UI8,   VT_INT,  VT_R4, VT_R8, VT_CY, VT_DATE, VT_BOOL, VT_ERROR};
    switch (source.below(8)) {
        case 0:
            return OfType(source.pick(plain), source.next() >> source.below(64));
        case 1:
            return Bytes(source.bytes(source.size()));
        case 2:
            return source.once_in(2) ? Texts(source) : win::Variant(static_cast<IDispatch*>(nullptr));
        case 3:
            return source.once_in(2) ? OfType(VT_BSTR, 0) : win::Variant(doubles::MakeObject().get());
        case 4:
            return win::Variant(source.once_in(2) ? L"20240229120000.000000+000" : L"Running");
        default:
            return win::Variant(source.text());
    }
}

// A row whose properties are anything, missing, or fail.
template <class Names>
win::Variant HostileRow(hostile::Source& source, const Names& names) {
    const auto row = doubles::MakeObject();
    for (const wchar_t* name : names) {
        if (source.once_in(12)) continue;
        if (source.once_in(12)) {
            row->method(name, [](const auto&, auto& result) {
                result = win::Variant(L"told with a failure");
                return E_FAIL;
            });
        } else {
            row->property(name, Anything(source));
        }
    }
    return win::Variant(row.get());
}

template <class Names>
win::Variant ControlRow(const Names& names) {
    const auto row = doubles::MakeObject();
    for (const wchar_t* name : names)
        row->property(name, win::Variant(name));
    return win::Variant(row.get());
}

// The members of a query: hostile ones, things that are no rows, and an intact row as the last.
template <class Names>
std::vector<win::Variant> HostileRows(hostile::Source& source, const Names& names, std::size_t& rows) {
    std::vector<win::Variant> members;
    for (rows = source.below(kMostRows); members.size() < rows;)
        members.push_back(HostileRow(source, names));
    if (source.once_in(3)) members.push_back(OfType(VT_I4, source.next()));
    members.push_back(ControlRow(names));
    ++rows;
    return members;
}

constexpr const wchar_t* kService[] = {L"Caption",  L"State",       L"StartMode",  L"Description",
                                       L"PathName", L"AcceptPause", L"AcceptStop", L"Name"};
constexpr const wchar_t* kProcess[] = {L"Name", L"ProcessID", L"Description", L"ExecutablePath", L"CreationClassName"};
constexpr const wchar_t* kPoint[] = {L"CreationTime", L"Description", L"SequenceNumber"};

// A machine with these restore points.
struct Points {
    std::vector<win::Variant> members;
    MonikerDouble moniker{[this](const std::wstring&) {
        auto root = doubles::MakeObject();
        root->method(L"InstancesOf", [this](const doubles::Arguments&, win::Variant& result) {
            auto found = doubles::MakeObject();
            found->collection([this] { return doubles::Members{members}; });
            result = win::Variant(found.get());
            return S_OK;
        });
        return root;
    }};
};

void CheckCells(const TestList& list, TestHost& host) {
    for (const auto& row : list.rows()) {
        for (const std::wstring& cell : row)
            REQUIRE(cell.find(L'\0') == cell.npos);
    }
    REQUIRE(!shell::CsvOf(list.list, host).empty());
}

}  // namespace

TEST_CASE("hostile services and processes cost their own cells") {
    const win::ComApartment apartment;
    const TestList services(services::kServiceColumns);
    const TestList processes(shell::kProcessColumns);
    TestHost host;
    std::vector<win::Variant> members;
    const WmiDouble wmi([&members](const std::wstring& query) {
        if (query.find(L" Where ") != query.npos) return doubles::Members{};
        return doubles::Members{members};
    });
    hostile::Run("services and processes", kRounds, [&](hostile::Source& source, std::uint64_t) {
        std::size_t rows = 0;
        members = HostileRows(source, kService, rows);
        services::FillServiceList(services.list, host);
        REQUIRE(services.list.count() == static_cast<int>(rows));
        REQUIRE(services.rows().back() ==
                std::vector<std::wstring>{L"Caption", L"", L"", L"Description", L"PathName", L"", L"", L"Name"});
        CheckCells(services, host);
        const auto row = static_cast<int>(source.below(rows));
        const services::ServiceDetail detail = services::lvService_ItemClick(services.list, row);
        REQUIRE(!detail.advice.empty());
        REQUIRE(detail.comment.size() + 2 >= services.list.cell(row, services::ServiceColumn::Description).size());

        members = HostileRows(source, kProcess, rows);
        shell::FillProcessList(processes.list, host);
        REQUIRE(processes.list.count() == static_cast<int>(rows));
        REQUIRE(processes.list.cell(static_cast<int>(rows) - 1, shell::ProcessColumn::ExecutablePath) ==
                L"ExecutablePath");
        CheckCells(processes, host);
    });
}

TEST_CASE("hostile restore points cost their own row") {
    const win::ComApartment apartment;
    const TestList points(programs::kRestoreColumns);
    TestHost host;
    Points machine;
    hostile::Run("restore points", kRounds, [&](hostile::Source& source, std::uint64_t) {
        std::size_t rows = 0;
        machine.members = HostileRows(source, kPoint, rows);
        const auto control = doubles::MakeObject();
        control->property(L"CreationTime", win::Variant(L"20240229233007.000000-000"));
        machine.members.emplace_back(control.get());
        REQUIRE(programs::ListRestorePoints(points.list));
        REQUIRE(points.list.count() >= 1);
        REQUIRE(points.list.count() <= static_cast<int>(rows) + 1);
        REQUIRE(points.rows().back() == std::vector<std::wstring>{L"2024/03/01 08:30:30", L""});
        for (const std::wstring& time : points.column(0))
            REQUIRE(time.size() == 19);
        CheckCells(points, host);
        // Any text for a time.
        const auto time = programs::RestorePointTime(source.text());
        REQUIRE((!time || time->size() == 19));
    });
}
