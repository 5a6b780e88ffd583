# Cross build for 64-bit Windows with Debian's MinGW-w64 (the POSIX thread
# model, whose libstdc++ has std::thread and std::mutex). Programs link the
# C and C++ runtimes statically, so a bare .exe runs on Windows and Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(_mingw x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${_mingw}-gcc-posix)
set(CMAKE_CXX_COMPILER ${_mingw}-g++-posix)
set(CMAKE_RC_COMPILER ${_mingw}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${_mingw})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
# Tests and tools run the built programs through Wine.
find_program(TARVELLOS_WINE wine)
if(TARVELLOS_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${TARVELLOS_WINE})
endif()
