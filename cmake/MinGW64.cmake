# Toolchain file: programs for 64-bit Windows, made by mingw-w64 and tried under wine.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The compiler with POSIX threads; the other one has no std::mutex and no std::thread.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Windows aligns stacks to 16 bytes, yet g++ moves wider vectors to and from them as if they were
# aligned to their size. Debian's g++ is patched not to; the assembler makes sure of it with any.
set(CMAKE_C_FLAGS_INIT -Wa,-muse-unaligned-vector-move)
set(CMAKE_CXX_FLAGS_INIT -Wa,-muse-unaligned-vector-move)

# Programs and plugins run where no library of the compiler or zlib is installed.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
set(CMAKE_MODULE_LINKER_FLAGS_INIT -static)
set(ZLIB_USE_STATIC_LIBS ON)

# Debian keeps wine64 out of the search path. The folder of settings is ours, not the user's.
find_program(TONVALE_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(TONVALE_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR
        env WINEPREFIX=${CMAKE_BINARY_DIR}/wine WINEDEBUG=-all ${TONVALE_WINE})
endif()
# Tests are listed when they are run, so that a build starts wine but to pack the resources.
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)
