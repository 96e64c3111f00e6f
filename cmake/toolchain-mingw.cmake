# Debian's MinGW, as cross compiler for Windows: -DPV_ARCH=i686|x86_64 [-DPV_WINE=<wine, or a program that runs it>].
set(CMAKE_SYSTEM_NAME Windows)
set(PV_ARCH i686 CACHE STRING "i686 (the product) or x86_64")
set(PV_WINE wine CACHE STRING "What runs Windows programs")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES PV_ARCH PV_WINE)

set(CMAKE_SYSTEM_PROCESSOR ${PV_ARCH})
set(CMAKE_C_COMPILER ${PV_ARCH}-w64-mingw32-gcc-posix)  # GoogleTest's project asks for one
set(CMAKE_CXX_COMPILER ${PV_ARCH}-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER ${PV_ARCH}-w64-mingw32-windres)
# Everything static: the mail server's machine has no MinGW libraries, only the system's own.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--enable-stdcall-fixup")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static -Wl,--enable-stdcall-fixup")

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR ${PV_WINE})
