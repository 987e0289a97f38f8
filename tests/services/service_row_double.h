// Rows of Win32_Service made by a test.
#pragma once

#include "../support/automation_double.h"

#include <string>

struct ServiceRow {
    std::wstring caption;
    std::wstring state = L"Running";
    std::wstring start_mode = L"Auto";
    std::wstring description = {};
    std::wstring path = {};
    bool accepts_pause = false;
    bool accepts_stop = true;
    std::wstring name = {};
};

inline win::ComPtr<doubles::Object> MakeService(const ServiceRow& row) {
    auto object = doubles::MakeObject();
    object->property(L"Caption", win::Variant(row.caption))
        .property(L"State", win::Variant(row.state))
        .property(L"StartMode", win::Variant(row.start_mode))
        .property(L"Description", win::Variant(row.description))
        .property(L"PathName", win::Variant(row.path))
        .property(L"AcceptPause", doubles::Boolean(row.accepts_pause))
        .property(L"AcceptStop", doubles::Boolean(row.accepts_stop))
        .property(L"Name", win::Variant(row.name));
    return object;
}
