# Windows with GCC, for the machine that `target` names. On Debian the compiler is named by its thread
# model: programs built with the posix one import functions of Windows Vista. On Windows itself a
# MinGW-w64 with the win32 thread model has to be first in the path.
set(CMAKE_SYSTEM_NAME Windows)
if(CMAKE_HOST_WIN32)
  set(CMAKE_CXX_COMPILER ${target}-g++)
  set(CMAKE_RC_COMPILER windres)
else()
  set(CMAKE_CXX_COMPILER ${target}-g++-win32)
  set(CMAKE_RC_COMPILER ${target}-windres)
  set(CMAKE_FIND_ROOT_PATH /usr/${target})
  set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
  set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
  set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
endif()
set(CMAKE_RC_FLAGS_INIT "-c 65001") # resource scripts are UTF-8
