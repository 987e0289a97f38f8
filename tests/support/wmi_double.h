// This computer's WMI as a test wants it: while it lives, "WbemScripting.SWbemLocator" is made here.
#pragma once

#include "automation_double.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

class WmiDouble {
public:
    explicit WmiDouble(std::function<doubles::Members(const std::wstring& query)> answer)
        : answer_(std::move(answer)), locator_(L"WbemScripting.SWbemLocator", [this] { return MakeLocator(); }) {}

    bool exists = true;         // the locator can be created
    bool connects = true;       // ConnectServer succeeds
    bool takes_queries = true;  // ExecQuery succeeds
    std::vector<std::wstring> queries;

private:
    win::ComPtr<doubles::Object> MakeLocator() {
        if (!exists) return {};
        auto locator = doubles::MakeObject();
        locator->method(L"ConnectServer", [this](const doubles::Arguments& arguments, win::Variant& result) {
            if (!connects || !arguments.empty()) return E_ACCESSDENIED;
            result = win::Variant(MakeConnection().get());
            return S_OK;
        });
        return locator;
    }

    win::ComPtr<doubles::Object> MakeConnection() {
        auto connection = doubles::MakeObject();
        connection->method(L"ExecQuery", [this](const doubles::Arguments& arguments, win::Variant& result) {
            if (!takes_queries || arguments.size() != 1 || arguments[0]->vt != VT_BSTR) return E_FAIL;
            const std::wstring query = queries.emplace_back(arguments[0]->bstrVal);
            auto rows = doubles::MakeObject();
            rows->collection([this, query] { return answer_(query); });
            result = win::Variant(rows.get());
            return S_OK;
        });
        return connection;
    }

    std::function<doubles::Members(const std::wstring& query)> answer_;
    doubles::RegisteredClass locator_;
};
