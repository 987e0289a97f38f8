#include "programs/file_icon.h"

namespace programs {

win::ImageList CreateSmallIconList() {
    constexpr int kGrowth = 64;
    return win::ImageList(ImageList_Create(GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON),
                                           ILC_COLOR32 | ILC_MASK, 0, kGrowth));
}

int AddFileIconToImageList(HIMAGELIST images, const std::wstring& path, UINT flags) {
    // For an empty path the shell would describe the current folder.
    if (path.empty()) return 0;
    SHFILEINFOW info = {};
    if (!SHGetFileInfoW(path.c_str(), 0, &info, sizeof info, flags | SHGFI_ICON | SHGFI_DISPLAYNAME)) return 0;
    const win::Icon icon(info.hIcon);
    if (!icon || ImageList_AddIcon(images, icon.get()) < 0) return 0;
    return ImageList_GetImageCount(images);
}

}  // namespace programs
