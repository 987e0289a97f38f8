// Program files with icons that can be told apart, and what colour a shown icon has.
#pragma once

#include "support/stand_in.h"
#include "win/handle.h"

#include <string>
#include <vector>

// The colour of icon `index` in a library made with `family`.
constexpr COLORREF IconColour(int family, int index) { return RGB(index & 0xFF, 0x80 + (index >> 8), family); }

namespace icon_library {

constexpr int kSide = 16;  // pixels

#pragma pack(push, 2)
struct GroupEntry {
    BYTE width, height, colours, reserved;
    WORD planes, bits;
    DWORD bytes;
    WORD id;
};
struct Group {
    WORD reserved, type, count;
    GroupEntry entry;
};
#pragma pack(pop)

struct IconImage {
    BITMAPINFOHEADER header = {};
    DWORD pixels[kSide * kSide];  // blue, green, red, alpha
    BYTE mask[kSide * 4] = {};
};

inline IconImage MakeImage(COLORREF colour) {
    IconImage image;
    image.header.biSize = sizeof image.header;
    image.header.biWidth = kSide;
    image.header.biHeight = kSide * 2;  // with the mask
    image.header.biPlanes = 1;
    image.header.biBitCount = 32;
    for (DWORD& pixel : image.pixels) {
        pixel = 0xFF000000 | static_cast<DWORD>(GetRValue(colour) << 16 | GetGValue(colour) << 8 | GetBValue(colour));
    }
    return image;
}

}  // namespace icon_library

// Makes `path` a program (a recorder) with `count` icons of the colours of `family`.
inline bool MakeIconLibrary(const std::wstring& path, int family, int count) {
    using namespace icon_library;
    if (!CopyFileW(StandIn::built(L"recorder_gui.exe").c_str(), path.c_str(), TRUE)) return false;
    const HANDLE update = BeginUpdateResourceW(path.c_str(), FALSE);
    for (int index = 0; index < count; ++index) {
        const auto id = static_cast<WORD>(index + 1);
        IconImage image = MakeImage(IconColour(family, index));
        Group group = {0, 1, 1, {kSide, kSide, 0, 0, 1, 32, sizeof image, id}};
        UpdateResourceW(update, RT_ICON, MAKEINTRESOURCEW(id), 0x411, &image, sizeof image);
        UpdateResourceW(update, RT_GROUP_ICON, MAKEINTRESOURCEW(id), 0x411, &group, sizeof group);
    }
    return EndUpdateResourceW(update, FALSE) != FALSE;
}

// The colour in the middle of an image as a list shows it.
inline COLORREF ImageColour(HIMAGELIST images, int index) {
    const win::WindowDc screen(nullptr);
    const win::MemoryDc dc(CreateCompatibleDC(screen.get()));
    const win::Bitmap bitmap(CreateCompatibleBitmap(screen.get(), icon_library::kSide, icon_library::kSide));
    const win::Selected selected(dc.get(), bitmap.get());
    ImageList_Draw(images, index, dc.get(), 0, 0, ILD_NORMAL);
    return GetPixel(dc.get(), icon_library::kSide / 2, icon_library::kSide / 2);
}
