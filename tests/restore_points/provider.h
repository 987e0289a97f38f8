// A machine's restore points as the provider gives them, and what was asked of it.
#pragma once

#include "support/moniker_double.h"

#include <string>
#include <vector>

class Provider {
public:
    std::vector<win::Variant> points;
    HRESULT end = S_FALSE;     // how the enumeration ends
    HRESULT instances = S_OK;  // of InstancesOf
    HRESULT creation = S_OK;   // of createrestorepoint
    bool exists = true;
    std::vector<std::wstring> calls;

private:
    win::ComPtr<doubles::Object> bind(const std::wstring& name) {
        calls.push_back(name);
        if (!exists) return {};
        auto object = doubles::MakeObject();
        object->method(L"InstancesOf", [this](const doubles::Arguments& arguments, win::Variant& result) {
            calls.push_back(L"InstancesOf " + Text(arguments));
            auto rows = doubles::MakeObject();
            rows->collection([this] { return doubles::Members{points, end}; });
            result = win::Variant(rows.get());
            return instances;
        });
        object->method(L"createrestorepoint", [this](const doubles::Arguments& arguments, win::Variant& result) {
            calls.push_back(L"createrestorepoint " + Text(arguments));
            result = win::Variant(5);  // what it returns is nobody's concern
            return creation;
        });
        return object;
    }
    static std::wstring Text(const doubles::Arguments& arguments) {
        std::wstring text;
        for (VARIANT* argument : arguments) {
            win::Variant copy;
            VariantCopy(copy.put(), argument);
            text += L"[" + copy.text() + L"]";
        }
        return text;
    }

    MonikerDouble moniker_{[this](const std::wstring& name) { return bind(name); }};
};
