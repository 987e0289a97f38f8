# Test programs; ./test runs them.
#
#   tests/NAME/*.cpp            -> test_NAME.exe   doctest, linked with all of the product
#   tests/helpers/NAME.cpp      -> NAME.exe        console program, starts at wmain
#   tests/helpers/NAME_gui.cpp  -> NAME_gui.exe    window program, starts at wWinMain
#   tests/helpers/NAME_dll.cpp  -> NAME_dll.dll    exports what it marks __declspec(dllexport)
#
# Folders without .cpp files, tests/helpers and tests/host make no test program. All of them lie
# side by side in build/check/bin. Tests may throw (doctest's REQUIRE does), but never through
# code of the product, which is built without exceptions.

# The cross compiler does not search /usr/include, and must not: those headers are the host's.
find_file(DOCTEST_HEADER doctest/doctest.h PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
configure_file(${DOCTEST_HEADER} ${generated}/system/doctest/doctest.h COPYONLY)
find_path(JSON_HEADERS nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(COPY ${JSON_HEADERS}/nlohmann DESTINATION ${generated}/system)

add_library(test_flags INTERFACE)
target_link_libraries(test_flags INTERFACE common_flags wininet psapi)
target_include_directories(test_flags INTERFACE tests)
target_include_directories(test_flags SYSTEM INTERFACE ${generated}/system)

add_library(test_main OBJECT tests/doctest_main.cpp)
target_link_libraries(test_main PRIVATE test_flags)
target_precompile_headers(test_main PRIVATE cmake/precompiled.h <doctest/doctest.h>)

file(GLOB folders CONFIGURE_DEPENDS LIST_DIRECTORIES true tests/*)
foreach(folder IN LISTS folders)
  cmake_path(GET folder FILENAME name)
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  if(NOT sources OR name MATCHES "^(helpers|host)$")
    continue()
  endif()
  add_executable(test_${name} ${sources})
  target_link_libraries(test_${name} PRIVATE test_main product test_flags)
  target_precompile_headers(test_${name} REUSE_FROM test_main)
endforeach()

file(GLOB sources CONFIGURE_DEPENDS tests/helpers/*.cpp)
foreach(source IN LISTS sources)
  cmake_path(GET source STEM name)
  if(name MATCHES "_dll$")
    add_library(${name} SHARED ${source})
    # As Windows' own DLLs: no "lib" before the name, no "@12" after an exported function's.
    set_target_properties(${name} PROPERTIES PREFIX "")
    target_link_options(${name} PRIVATE -Wl,--kill-at)
  elseif(name MATCHES "_gui$")
    add_executable(${name} WIN32 ${source})
    target_link_options(${name} PRIVATE -municode)
  else()
    add_executable(${name} ${source})
    target_link_options(${name} PRIVATE -municode)
  endif()
  target_link_libraries(${name} PRIVATE product test_flags)
endforeach()

# Installers of the two common kinds; tests/drive/programs.py installs what they bring and finds it in the list.
find_program(MAKENSIS makensis REQUIRED NO_CMAKE_FIND_ROOT_PATH)
find_program(WIXL wixl REQUIRED NO_CMAKE_FIND_ROOT_PATH)
set(packages ${CMAKE_SOURCE_DIR}/tests/packages)
add_custom_command(OUTPUT ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/sample_nsis.exe
  COMMAND ${MAKENSIS} -V2 -DOUTPUT=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/sample_nsis.exe ${packages}/sample.nsi
  DEPENDS ${packages}/sample.nsi VERBATIM)
add_custom_command(OUTPUT ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/sample.msi
  COMMAND ${WIXL} -o ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/sample.msi ${packages}/sample.wxs
  DEPENDS ${packages}/sample.wxs WORKING_DIRECTORY ${packages} VERBATIM)
add_custom_target(sample_packages ALL
  DEPENDS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/sample_nsis.exe ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/sample.msi)
