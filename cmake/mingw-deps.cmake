# Dependencies of the MinGW cross build. The header-only libraries come from
# the build machine's own packages, through a folder that holds only their
# headers (putting the build machine's /usr/include on the path would mix
# its C library headers into the Windows build). GoogleTest is built from
# Debian's source. No PNG library exists for MinGW here: the readers of
# stored images take BMP files only in this build.
set(_hdr ${CMAKE_BINARY_DIR}/host-headers)
file(MAKE_DIRECTORY ${_hdr})
foreach(_dir nlohmann CLI)
  if(NOT EXISTS /usr/include/${_dir})
    message(FATAL_ERROR "/usr/include/${_dir} is missing: run scripts/install-deps")
  endif()
  file(CREATE_LINK /usr/include/${_dir} ${_hdr}/${_dir} SYMBOLIC)
endforeach()
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
set_target_properties(nlohmann_json::nlohmann_json PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${_hdr})
add_library(CLI11::CLI11 INTERFACE IMPORTED)
set_target_properties(CLI11::CLI11 PROPERTIES INTERFACE_INCLUDE_DIRECTORIES ${_hdr})

if(TARVELLOS_TESTS AND NOT TARGET GTest::gtest)
  set(_gtest_src /usr/src/googletest)
  if(NOT EXISTS ${_gtest_src}/CMakeLists.txt)
    message(FATAL_ERROR "${_gtest_src} is missing: run scripts/install-deps (googletest)")
  endif()
  set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(gtest_disable_pthreads ON CACHE BOOL "" FORCE)
  add_subdirectory(${_gtest_src} ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
  # Not our code: its warnings are not ours to fix. (Its CMake file names
  # the targets GTest::gtest and GTest::gtest_main itself.)
  set_target_properties(gtest gtest_main PROPERTIES COMPILE_OPTIONS "-w")
  set(GTest_FOUND TRUE)
endif()
