# Cross-build for 64-bit Windows with Debian's mingw-w64 (posix threads), the
# tests run through wine64.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Executables and libraries carry their C++ and thread runtimes, so nothing
# has to be found beside them under Wine.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

# The loader itself: /usr/bin/wine is a wrapper that insists on wine32.
find_program(PCG_WINE64 NAMES wine64 PATHS /usr/lib/wine /usr/lib64/wine NO_DEFAULT_PATH)
if(NOT PCG_WINE64)
  find_program(PCG_WINE64 NAMES wine64 wine)
endif()
if(PCG_WINE64)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${PCG_WINE64})
endif()
