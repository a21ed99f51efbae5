# Libraries that Debian has in no package for Windows are built with us, from the sources that
# ./dev unpacks; find_package then finds those instead of an installed library.

include(FetchContent)

set(TONVALE_MINGW_SOURCES ${PROJECT_SOURCE_DIR}/build/windows-deps CACHE PATH
    "Folder with the sources of the libraries, each in a folder of its package's name")
foreach(package highway kissfft libpng1.6 freetype)
    if(NOT EXISTS ${TONVALE_MINGW_SOURCES}/${package})
        message(FATAL_ERROR "The sources of ${package} are missing; ./dev build windows fetches them")
    endif()
endforeach()

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

set(PNG_SHARED OFF CACHE BOOL "")
set(PNG_EXECUTABLES OFF CACHE BOOL "")
set(PNG_TESTS OFF CACHE BOOL "")
set(SKIP_INSTALL_ALL ON)
FetchContent_Declare(libpng SOURCE_DIR ${TONVALE_MINGW_SOURCES}/libpng1.6 SYSTEM)

foreach(library BZIP2 PNG HARFBUZZ BROTLI)
    set(FT_DISABLE_${library} ON CACHE BOOL "")
endforeach()
set(FT_DISABLE_ZLIB OFF CACHE BOOL "") # it would take a copy of its own
FetchContent_Declare(freetype SOURCE_DIR ${TONVALE_MINGW_SOURCES}/freetype SYSTEM)

FetchContent_MakeAvailable(hwy kissfft libpng freetype)
add_library(hwy::hwy ALIAS hwy)
set_target_properties(hwy_list_targets PROPERTIES EXCLUDE_FROM_ALL ON)

# By the names that pkg-config would give them.
add_library(PkgConfig::PNG INTERFACE IMPORTED GLOBAL)
target_link_libraries(PkgConfig::PNG INTERFACE png_static)
target_include_directories(PkgConfig::PNG SYSTEM INTERFACE
    ${libpng_SOURCE_DIR} ${libpng_BINARY_DIR})
add_library(PkgConfig::FREETYPE INTERFACE IMPORTED GLOBAL)
target_link_libraries(PkgConfig::FREETYPE INTERFACE freetype)

if(TONVALE_TESTS)
    set(INSTALL_GTEST OFF CACHE BOOL "")
    FetchContent_Declare(GTest SOURCE_DIR /usr/src/googletest SYSTEM OVERRIDE_FIND_PACKAGE)
endif()
