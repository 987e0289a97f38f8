// The headers that nearly every file needs, parsed once a build instead of once a file.
#pragma once

#include <winsock2.h>  // before windows.h, which would bring the older winsock.h

#include <windows.h>

#include <commctrl.h>
#include <commdlg.h>
#include <ole2.h>
#include <olectl.h>
#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>
#include <wininet.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cwchar>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
