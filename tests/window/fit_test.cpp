// The smallest window in the resolution that this process was started in; tests/drive/resolutions.py starts it in more.
#include "driven.h"

#include <algorithm>
#include <map>

using namespace shell;

namespace {

constexpr Control kValues[] = {Control::lblMem_0, Control::lblMem_1, Control::lblMem_2, Control::lblMem_3,
                               Control::lblMem_4};

struct Seen {
    std::wstring kind;
    std::wstring text;
    RECT place;
    SIZE needs;
};

std::map<Control, Seen> ShownControls(const Driven& window) {
    std::map<Control, Seen> shown;
    for (int index = 0; index < static_cast<int>(Control::Count); ++index) {
        const auto which = static_cast<Control>(index);
        const HWND control = window.at(which);
        Seen seen = {};
        if (!control || !window.shown(which)) continue;
        wchar_t kind[32] = {};
        GetClassNameW(control, kind, 32);
        seen.kind = kind;
        seen.text = window.text(which);
        GetWindowRect(control, &seen.place);
        MapWindowPoints(nullptr, window.form.window(), reinterpret_cast<POINT*>(&seen.place), 2);
        const win::MemoryDc dc(CreateCompatibleDC(nullptr));
        const win::Selected font(dc.get(), reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
        RECT text = {};
        DrawTextW(dc.get(), seen.text.c_str(), -1, &text, DT_CALCRECT);
        seen.needs = {text.right, text.bottom};
        if (!IsRectEmpty(&seen.place)) shown[which] = seen;
    }
    return shown;
}

}  // namespace

TEST_CASE("in the smallest window no control is cut off or covered and every caption can be read") {
    const int dpi = GetDeviceCaps(win::WindowDc(nullptr).get(), LOGPIXELSX);
    for (const std::string font : {"", "Font=IPAGothic\r\n"}) {
        CAPTURE(font);
        const SettingsFile settings("W=7200\r\nH=4800\r\nStripe=-1\r\n" + font);
        const Driven window;
        RECT client = {};
        GetClientRect(window.form.window(), &client);
        CHECK(client.right < 640 * dpi / 96);
        for (int tab = 0; tab < 7; ++tab) {
            CAPTURE(tab);
            window.click(tab);
            RECT strip = {};
            SendMessageW(window.at(Control::tb), TCM_GETITEMRECT, static_cast<WPARAM>(tab),
                         reinterpret_cast<LPARAM>(&strip));
            CHECK(strip.right <= client.right);
            const auto shown = ShownControls(window);
            CHECK(shown.size() >= 3);
            for (const auto& each : shown) {
                const Control which = each.first;
                const Seen& seen = each.second;
                CAPTURE(seen.text);
                RECT common = {};
                UnionRect(&common, &seen.place, &client);
                CHECK(EqualRect(&common, &client));
                // Values may be shortened, captions never.
                const bool value = std::ranges::count(kValues, which) > 0;
                if (seen.kind == L"Button" || (seen.kind == L"Static" && !value)) {
                    CHECK(seen.needs.cx <= seen.place.right - seen.place.left);
                    CHECK(seen.needs.cy <= seen.place.bottom - seen.place.top);
                }
                for (const auto& [other, one] : shown)
                    CHECK((other == which || !IntersectRect(&common, &seen.place, &one.place)));
            }
        }
    }
}
