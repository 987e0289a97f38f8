// The Windows headers in the one order that works: winsock2 before windows, ole2 before olectl.
#pragma once

#include <winsock2.h>

#include <windows.h>

#include <ole2.h>
#include <olectl.h>

#include <commctrl.h>
#include <commdlg.h>
#include <shellapi.h>
#include <shlobj.h>
#include <shlwapi.h>
