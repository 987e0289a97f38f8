# 32-bit Windows with GCC. On Debian the compiler is named by its thread model: programs built
# with the posix one import functions of Windows Vista. On Windows itself a MinGW-w64 with the
# win32 thread model has to be first in the path.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
if(CMAKE_HOST_WIN32)
  set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++)
  set(CMAKE_RC_COMPILER windres)
else()
  set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-win32)
  set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
  set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
  set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
  set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
endif()
set(CMAKE_RC_FLAGS_INIT "-c 65001") # resource scripts are UTF-8
