// Copies of the recorder program put in the place of others, and what they noted.
#pragma once

#include "support/stand_in.h"
#include "support/test_folder.h"
#include "support/throw_away.h"
#include "win/folders.h"
#include "win/handle.h"
#include "win/system_text.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

// What was there before comes back at the end.
class Recorder {
public:
    struct Start {
        std::wstring program;  // the full path of the copy that ran, in lower case
        std::wstring show;     // its show command, in decimal
        std::wstring command_line;
    };

    Recorder() {
        REQUIRE_THROW_AWAY();
        GetDesktopWindow();  // Wine starts its Explorer now, before that may be replaced
        // The program that wrote last may not have closed it yet.
        for (int turn = 0; turn < 100 && !DeleteFileW(kRecord) && GetLastError() != ERROR_FILE_NOT_FOUND; ++turn) {
            Sleep(10);
        }
    }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;
    ~Recorder() {
        for (const std::wstring& path : installed_) {
            // It may still run.
            for (int turn = 0; turn < 100 && win::IsFile(path) && !DeleteFileW(path.c_str()); ++turn)
                Sleep(50);
            MoveFileW(Aside(path).c_str(), path.c_str());
        }
    }

    // Makes `path` a copy of the recorder. False when that cannot be.
    bool install(const std::wstring& path) {
        MoveFileW(path.c_str(), Aside(path).c_str());
        if (!CopyFileW(StandIn::built(L"recorder_gui.exe").c_str(), path.c_str(), TRUE)) return false;
        installed_.push_back(path);
        return true;
    }

    // The same for a program of Windows' own.
    bool install_in_system(const std::wstring& name) { return install(win::SystemDirectory() + L"\\" + name); }

    // `program` is `name` in the folder that 64-bit Windows shows to the product as its system folder.
    static bool is_in_system(const std::wstring& program, const std::wstring& name) {
        return program.ends_with(L"\\syswow64\\" + name) || program.ends_with(L"\\system32\\" + name);
    }

    // The starts noted so far; waits until there are `expected` of them, 5 seconds at most.
    std::vector<Start> starts(std::size_t expected) const {
        std::vector<Start> noted = read();
        for (int turn = 0; turn < 100 && noted.size() < expected; ++turn) {
            Sleep(50);
            noted = read();
        }
        return noted;
    }

    // The starts noted after a time in which a wrong one would have shown.
    std::vector<Start> starts_after_a_while() const {
        Sleep(400);
        return read();
    }

private:
    static constexpr const wchar_t* kRecord = L"C:\\record.txt";

    static std::wstring Aside(const std::wstring& path) { return path + L".aside"; }

    static std::vector<Start> read() {
        std::vector<Start> noted;
        const std::wstring text = WideContentOf(kRecord);
        std::size_t from = 0;
        for (std::size_t end; (end = text.find(L'\n', from)) != text.npos; from = end + 1) {
            const std::size_t first = text.find(L'\t', from);
            const std::size_t second = text.find(L'\t', first + 1);
            noted.push_back({win::LowerCase(text.substr(from, first - from)),
                             text.substr(first + 1, second - first - 1), text.substr(second + 1, end - second - 1)});
        }
        return noted;
    }

    std::vector<std::wstring> installed_;
};
