// Files in the place of others until the end of a scope: of Windows' own, or of programs whose starts are recorded.
#pragma once

#include "support/show.h"
#include "support/test_folder.h"
#include "support/throw_away.h"
#include "win/folders.h"
#include "win/system_text.h"
#include "win/text.h"

#include <deque>
#include <sstream>
#include <string>
#include <vector>

// A copy of `source` at the path `place`, or under that name in the system folder. What was there comes back.
class StandIn {
public:
    StandIn(const std::wstring& place, const std::wstring& source)
        : path_(win::Contains(place, L"\\") ? place : win::SystemDirectory() + L"\\" + place),
          module_(PathFindFileNameW(place.c_str())) {
        REQUIRE_THROW_AWAY();
        MoveFileW(path_.c_str(), kept_.c_str());
        // Else Wine loads its own program, whatever the file is.
        SHSetValueW(HKEY_CURRENT_USER, kOverrides, module_.c_str(), REG_SZ, L"native", sizeof L"native");
        placed_ = CopyFileW(source.c_str(), path_.c_str(), TRUE) != FALSE;
    }
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;
    ~StandIn() {
        SHDeleteValueW(HKEY_CURRENT_USER, kOverrides, module_.c_str());
        // It may still run.
        for (int turn = 0; turn < 100 && win::IsFile(path_) && !DeleteFileW(path_.c_str()); ++turn)
            Sleep(50);
        MoveFileW(kept_.c_str(), path_.c_str());
    }

    bool placed() const { return placed_; }

    // A file that was built beside the test program.
    static std::wstring built(const std::wstring& name) { return win::ApplicationFolder() + L"\\" + name; }

private:
    static constexpr const wchar_t* kOverrides = L"Software\\Wine\\DllOverrides";

    std::wstring path_;
    std::wstring module_;
    std::wstring kept_ = path_ + L".kept";
    bool placed_ = false;
};

// Copies of the recorder program put in the place of others, and what they noted.
class Recorder {
public:
    // A line of the recorder's file.
    struct Start {
        std::wstring program;  // in lower case
        std::wstring show;
        std::wstring command_line;
    };

    Recorder() {
        REQUIRE_THROW_AWAY();
        GetDesktopWindow();  // Wine starts its Explorer now, before that may be replaced
        for (int turn = 0; turn < 100 && win::IsFile(kRecord) && !DeleteFileW(kRecord); ++turn)
            Sleep(10);  // until the program that wrote last has closed it
    }

    // At a path, or in the place of a program of the system folder. False when that cannot be.
    bool install(const std::wstring& place) {
        return installed_.emplace_back(place, StandIn::built(L"recorder_gui.exe")).placed();
    }

    // The starts noted so far; waits until there are `expected` of them, 20 seconds at most.
    std::vector<Start> starts(std::size_t expected) const {
        for (int turn = 0; turn < 400 && starts().size() < expected; ++turn)
            Sleep(50);
        return starts();
    }

    // The starts noted after a time in which a wrong one would have shown.
    std::vector<Start> starts_after_a_while() const {
        Sleep(400);
        return starts();
    }

private:
    static constexpr const wchar_t* kRecord = L"C:\\record.txt";

    static std::vector<Start> starts() {
        std::vector<Start> noted;
        const std::string content = ContentOf(kRecord);
        std::wstring text(content.size() / sizeof(wchar_t), L'\0');
        content.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t));
        std::wistringstream lines(text);
        Start each;
        while (
            std::getline(std::getline(std::getline(lines, each.program, L'\t'), each.show, L'\t'), each.command_line))
            noted.push_back({win::LowerCase(each.program), each.show, each.command_line});
        return noted;
    }

    std::deque<StandIn> installed_;
};
