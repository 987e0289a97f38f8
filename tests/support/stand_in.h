// A file in the place of one of Windows' own in the system folder, until the end of the scope.
#pragma once

#include "support/show.h"
#include "support/throw_away.h"
#include "win/folders.h"
#include "win/handle.h"
#include "win/text.h"

#include <string>

class StandIn {
public:
    // `source` is the path of the file to put there; `name` "control.exe".
    StandIn(std::wstring name, const std::wstring& source) : name_(std::move(name)) {
        REQUIRE_THROW_AWAY();
        MoveFileW(path_.c_str(), kept_.c_str());
        // Else Wine loads its own program or library, whatever the file is.
        const std::wstring module = override_name();
        SHSetValueW(HKEY_CURRENT_USER, kOverrides, module.c_str(), REG_SZ, L"native", sizeof L"native");
        placed_ = CopyFileW(source.c_str(), path_.c_str(), TRUE) != FALSE;
    }
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;
    ~StandIn() {
        SHDeleteValueW(HKEY_CURRENT_USER, kOverrides, override_name().c_str());
        DeleteFileW(path_.c_str());
        MoveFileW(kept_.c_str(), path_.c_str());
    }

    bool placed() const { return placed_; }

    // A file that was built beside the test program.
    static std::wstring built(const std::wstring& name) {
        wchar_t own[MAX_PATH] = {};
        GetModuleFileNameW(nullptr, own, MAX_PATH);
        const std::wstring path = own;
        return path.substr(0, path.rfind(L'\\') + 1) + name;
    }

private:
    static constexpr const wchar_t* kOverrides = L"Software\\Wine\\DllOverrides";

    // Libraries are named there without their extension.
    std::wstring override_name() const { return name_.ends_with(L".dll") ? name_.substr(0, name_.size() - 4) : name_; }

    std::wstring name_;
    std::wstring path_ = win::SystemDirectory() + L"\\" + name_;
    std::wstring kept_ = path_ + L".kept";
    bool placed_ = false;
};
