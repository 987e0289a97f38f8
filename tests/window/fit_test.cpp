// The smallest window in the resolution that this process was started in; tests/drive/resolutions.py starts it in more.
#include "driven.h"

#include <algorithm>
#include <vector>

using namespace shell;

namespace {

constexpr Control kValues[] = {Control::lblMem_0, Control::lblMem_1, Control::lblMem_2, Control::lblMem_3,
                               Control::lblMem_4};

void CheckShownControls(const Driven& window) {
    RECT client = {}, common = {};
    GetClientRect(window.window(), &client);
    std::vector<RECT> places;
    for (int index = 0; index < static_cast<int>(Control::Count); ++index) {
        const auto which = static_cast<Control>(index);
        const HWND control = window.at(which);
        RECT place = BoundsOf(control);
        if (!window.shown(which) || IsRectEmpty(&place)) continue;
        MapWindowPoints(nullptr, window.window(), reinterpret_cast<POINT*>(&place), 2);
        const std::wstring text = window.text(which);
        CAPTURE(text);
        UnionRect(&common, &place, &client);
        CHECK(EqualRect(&common, &client));
        for (const RECT& other : places)
            CHECK_FALSE(IntersectRect(&common, &place, &other));
        places.push_back(place);
        // Values may be shortened, captions never.
        wchar_t kind[32] = {};
        GetClassNameW(control, kind, 32);
        const bool value = kind != std::wstring(L"Static") || std::ranges::count(kValues, which) > 0;
        if (value && kind != std::wstring(L"Button")) continue;
        const win::MemoryDc dc(CreateCompatibleDC(nullptr));
        const win::Selected font(dc.get(), reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
        RECT needs = {};
        DrawTextW(dc.get(), text.c_str(), -1, &needs, DT_CALCRECT);
        CHECK((needs.right <= place.right - place.left && needs.bottom <= place.bottom - place.top));
    }
    CHECK(places.size() >= 3);
}

}  // namespace

TEST_CASE("in the smallest window no control is cut off or covered and every caption can be read") {
    const int dpi = GetDeviceCaps(win::WindowDc(nullptr).get(), LOGPIXELSX);
    for (const std::string font : {"", "Font=IPAGothic\r\n"}) {
        CAPTURE(font);
        const SettingsFile settings("W=7200\r\nH=4800\r\nStripe=-1\r\n" + font);
        const Driven window;
        RECT client = {}, strip = {};
        GetClientRect(window.window(), &client);
        CHECK(client.right < 640 * dpi / 96);
        for (int tab = 0; tab < kTabs; ++tab) {
            CAPTURE(tab);
            window.click(tab);
            SendMessageW(window.at(Control::tb), TCM_GETITEMRECT, static_cast<WPARAM>(tab),
                         reinterpret_cast<LPARAM>(&strip));
            CHECK(strip.right <= client.right);
            CheckShownControls(window);
        }
    }
}
