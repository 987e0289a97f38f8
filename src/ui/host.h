// The face of the main window that a feature sees: how it speaks to the user and lets the window breathe.
#pragma once

#include "win/platform.h"

#include <optional>
#include <string>
#include <string_view>

namespace ui {

inline constexpr wchar_t kProductName[] = L"Qorvenix";

enum class Answer { Ok, Cancel };

class Host {
public:
    // The window that owns what a feature opens.
    virtual HWND window() const = 0;

    // Writes the status bar's text and paints it at once, so that it can be read while the work runs.
    virtual void set_status(std::wstring_view text) = 0;
    virtual std::wstring status_text() const = 0;

    // A question with OK and Cancel. Closing the box is Cancel. `icon` is an MB_ICON… constant or 0. Messages are
    // processed meanwhile: find rows again afterwards by what identifies them.
    virtual Answer confirm(std::wstring_view text, std::wstring_view title = kProductName, UINT icon = 0) = 0;

    // A box with one line of text. Nothing on Cancel.
    virtual std::optional<std::wstring> input(std::wstring_view prompt, std::wstring_view title = kProductName) = 0;

    // Lets the window process its pending messages once. Commands that arrive meanwhile wait until the running fill
    // has returned. False when a close waits, so that a long deletion can stop early.
    virtual bool pump() = 0;

    // The hourglass (true) or the default pointer (false). Not counted: the last call decides.
    virtual void hourglass(bool shown) = 0;

protected:
    ~Host() = default;
};

// For long loops: pumps about as often as an eye can follow, however short a step is. Looking for a message costs
// more than many a step.
class PumpThrottle {
public:
    explicit PumpThrottle(Host& host) : host_(host), last_(GetTickCount()) {}

    // To be called once a step. False when a close waits.
    bool operator()() {
        const DWORD now = GetTickCount();
        if (now - last_ < kMilliseconds) return true;
        last_ = now;
        return host_.pump();
    }

private:
    static constexpr DWORD kMilliseconds = 15;

    Host& host_;
    DWORD last_;
};

}  // namespace ui
