# Libraries that Debian has in no package for Windows are built with us, from the sources that
# ./dev unpacks; find_package then finds those instead of an installed library.

include(FetchContent)

set(TONVALE_MINGW_SOURCES ${PROJECT_SOURCE_DIR}/build/windows-deps CACHE PATH
    "Folder with the sources of Highway and KissFFT, in highway and kissfft")
if(NOT EXISTS ${TONVALE_MINGW_SOURCES}/kissfft)
    message(FATAL_ERROR "The sources are missing; ./dev build windows fetches them")
endif()

set(HWY_ENABLE_CONTRIB OFF CACHE BOOL "")
set(HWY_ENABLE_EXAMPLES OFF CACHE BOOL "")
set(HWY_ENABLE_TESTS OFF CACHE BOOL "")
FetchContent_Declare(hwy
    SOURCE_DIR ${TONVALE_MINGW_SOURCES}/highway SYSTEM OVERRIDE_FIND_PACKAGE)

set(KISSFFT_PKGCONFIG OFF CACHE BOOL "")
set(KISSFFT_STATIC ON CACHE BOOL "")
set(KISSFFT_TEST OFF CACHE BOOL "")
set(KISSFFT_TOOLS OFF CACHE BOOL "")
FetchContent_Declare(kissfft
    SOURCE_DIR ${TONVALE_MINGW_SOURCES}/kissfft SYSTEM OVERRIDE_FIND_PACKAGE)

FetchContent_MakeAvailable(hwy kissfft)
add_library(hwy::hwy ALIAS hwy)
set_target_properties(hwy_list_targets PROPERTIES EXCLUDE_FROM_ALL ON)

if(TONVALE_TESTS)
    set(INSTALL_GTEST OFF CACHE BOOL "")
    FetchContent_Declare(GTest SOURCE_DIR /usr/src/googletest SYSTEM OVERRIDE_FIND_PACKAGE)
endif()
