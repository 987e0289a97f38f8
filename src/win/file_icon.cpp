#include "win/file_icon.h"

#include "win/shell_file_info.h"

namespace win {

ImageList CreateSmallIconList() {
    constexpr int kGrowth = 64;
    return ImageList(ImageList_Create(GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON),
                                      ILC_COLOR32 | ILC_MASK, 0, kGrowth));
}

int AddFileIconToImageList(HIMAGELIST images, const std::wstring& path, UINT flags) {
    SHFILEINFOW info = {};
    if (!GetShellFileInfo(path, flags | SHGFI_ICON | SHGFI_DISPLAYNAME, info)) return 0;
    const Icon icon(info.hIcon);
    if (!icon || ImageList_AddIcon(images, icon.get()) < 0) return 0;
    return ImageList_GetImageCount(images);
}

}  // namespace win
