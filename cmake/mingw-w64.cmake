# Cross-building for 64-bit Windows with Debian's MinGW-w64 (the posix thread model, which
# std::thread needs). VELDRA_WINDOWS_PREFIX names the folder of the libraries built for it
# (scripts/windows.sh); only that folder and the compiler's own are searched for libraries and
# headers, so nothing of the Linux host leaks into the program.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

if(NOT VELDRA_WINDOWS_PREFIX AND DEFINED ENV{VELDRA_WINDOWS_PREFIX})
  set(VELDRA_WINDOWS_PREFIX $ENV{VELDRA_WINDOWS_PREFIX})
endif()
# Try-compiles run in fresh projects: they must see the same prefix.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES VELDRA_WINDOWS_PREFIX)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32 ${VELDRA_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The C and C++ runtimes and the thread library go into the program, so it needs only the
# DLLs every Windows has.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
