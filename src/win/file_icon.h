// Small icons of files in an image list.
#pragma once

#include "win/handle.h"

#include <string>

namespace win {

// An empty image list for icons of the system's small size, in full colour with a mask.
ImageList CreateSmallIconList();

// Adds the icon that the shell shows for `path` (SHGetFileInfoW; `flags` is SHGFI_SMALLICON or 0) and returns the
// number of images in the list, so that the new image's index is one less; 0 when no icon was added.
int AddFileIconToImageList(HIMAGELIST images, const std::wstring& path, UINT flags);

}  // namespace win
