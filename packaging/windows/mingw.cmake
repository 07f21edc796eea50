# Toolchain: Windows programs made on Linux by MinGW-w64, run by Wine.
#   TELVO_WINDOWS_PREFIX  where the libraries for Windows are installed
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TELVO_WINDOWS_PREFIX)
set(CMAKE_PREFIX_PATH ${TELVO_WINDOWS_PREFIX})
set(CMAKE_FIND_ROOT_PATH ${TELVO_WINDOWS_PREFIX} /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# One file per program: the libraries are static.
set(PKG_CONFIG_ARGN --static)
set(ENV{PKG_CONFIG_LIBDIR} ${TELVO_WINDOWS_PREFIX}/lib/pkgconfig:/usr/x86_64-w64-mingw32/lib/pkgconfig)
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)

find_program(wine NAMES wine64 wine64-stable PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(wine)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${wine})
endif()
