# Code that needs no Windows, built for this machine under the address and undefined-behaviour
# sanitizers and run by ./test as host_tests.

# Files of src that include no Windows header, directly or through another header.
set(HOST_SOURCES
  src/win/size_text.cpp
  src/shell/activity.cpp
  src/shell/layout.cpp
  src/ui/contrast.cpp
  src/startup/path.cpp
  src/sysinfo/os_name.cpp
  src/sysinfo/system_report.cpp
  src/win/text.cpp
)

file(GLOB tests CONFIGURE_DEPENDS tests/host/*.cpp)
if(tests)
  add_executable(host_tests ${HOST_SOURCES} ${tests})
  target_link_libraries(host_tests PRIVATE common_flags)
  target_include_directories(host_tests PRIVATE tests)
endif()
