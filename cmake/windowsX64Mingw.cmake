# Toolchain: Windows x64 from Linux, with mingw-w64 as Debian packages it
# (g++-mingw-w64-x86-64-posix, the variant with the standard library's threads).
# What is built runs under wine, headless.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix CACHE STRING "")
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres CACHE STRING "")

# Libraries and headers of the target alone: those of /usr/include are of
# another system. Programs are this machine's.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# GoogleTest and CLI11 out of the sources that Debian packages.
list(PREPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR}/windows/packages)

# CMake's own trial builds have folders of their own below the build folder and
# run nothing.
set(CMAKE_CROSSCOMPILING_EMULATOR
    ${CMAKE_CURRENT_LIST_DIR}/windows/wine.sh ${CMAKE_BINARY_DIR}/wine run)
