# How every target of Tonvale is compiled, and the functions that make one.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON) # all of src/ ends up in a plugin module
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_library(tonvale_options INTERFACE)
target_include_directories(tonvale_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(tonvale_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wold-style-cast -Wnon-virtual-dtor
    -Woverloaded-virtual -Wnull-dereference -Werror
    # Multiply and add stay two roundings, so that every processor gives the same bits.
    -ffp-contract=off)
if(TONVALE_SANITIZERS)
    target_compile_options(tonvale_options INTERFACE
        -fsanitize=${TONVALE_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer
        # The sanitizers' own checks make g++ see null pointers that cannot occur.
        -Wno-null-dereference)
    target_link_options(tonvale_options INTERFACE -fsanitize=${TONVALE_SANITIZERS})
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND TONVALE_FUZZ)
        target_compile_options(tonvale_options INTERFACE -fsanitize=fuzzer-no-link)
    endif()
endif()

# A folder of src/ as a static library: tonvale_folder(NAME SOURCES ... LINK ... PRIVATE_LINK ...).
# LINK names what its headers need, PRIVATE_LINK what only its sources need.
function(tonvale_folder name)
    cmake_parse_arguments(FOLDER "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(tonvale_${name} STATIC ${FOLDER_SOURCES})
    target_link_libraries(tonvale_${name}
        PUBLIC tonvale_options ${FOLDER_LINK} PRIVATE ${FOLDER_PRIVATE_LINK})
endfunction()

# The tests of one folder as one program: tonvale_tests(NAME SOURCES ... LINK ...). The target
# tonvale-thread-tests builds those of which a suite is called ...Threads.
function(tonvale_tests name)
    cmake_parse_arguments(TESTS "" "" "SOURCES;LINK" ${ARGN})
    add_executable(tonvale-test-${name}
        ${TESTS_SOURCES} ${PROJECT_SOURCE_DIR}/tests/OwnUserData.cpp)
    target_include_directories(tonvale-test-${name} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(tonvale-test-${name} PRIVATE tonvale_options ${TESTS_LINK} GTest::gtest_main)
    foreach(source IN LISTS TESTS_SOURCES)
        file(STRINGS ${source} suites REGEX "^TEST[_FP]*\\([A-Za-z0-9]*Threads,")
        if(suites)
            if(NOT TARGET tonvale-thread-tests)
                add_custom_target(tonvale-thread-tests)
            endif()
            add_dependencies(tonvale-thread-tests tonvale-test-${name})
        endif()
    endforeach()
    # The first program that wine runs waits until wine has set itself up.
    gtest_discover_tests(tonvale-test-${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endfunction()

# The plugin module of one host standard, with the resources inside it:
# tonvale_module(STANDARD SOURCES ... LINK ... [FOLDER folder] [SUFFIX suffix]). It is called Tonvale
# and lies in the folder, which is one of the standard's name unless told. Exports.map, or Exports.def
# on Windows, beside the sources names all that it exports.
function(tonvale_module standard)
    cmake_parse_arguments(MODULE "" "FOLDER;SUFFIX" "SOURCES;LINK" ${ARGN})
    if(NOT MODULE_FOLDER)
        set(MODULE_FOLDER ${CMAKE_BINARY_DIR}/${standard})
    endif()
    if(NOT MODULE_SUFFIX)
        set(MODULE_SUFFIX ${CMAKE_SHARED_MODULE_SUFFIX})
    endif()
    set(name tonvale-${standard})
    add_library(${name} MODULE ${MODULE_SOURCES})
    target_link_libraries(${name} PRIVATE tonvale_options tonvale_resources ${MODULE_LINK})
    set_target_properties(${name} PROPERTIES PREFIX "" OUTPUT_NAME Tonvale SUFFIX ${MODULE_SUFFIX}
        LIBRARY_OUTPUT_DIRECTORY ${MODULE_FOLDER})
    if(WIN32)
        target_sources(${name} PRIVATE Exports.def)
        return()
    endif()
    set(exports ${CMAKE_CURRENT_SOURCE_DIR}/Exports.map)
    target_link_options(${name} PRIVATE -Wl,--version-script=${exports})
    set_target_properties(${name} PROPERTIES LINK_DEPENDS ${exports})
    if(NOT TONVALE_SANITIZERS) # a sanitizer's functions are in the program
        target_link_options(${name} PRIVATE -Wl,--no-undefined)
    endif()
endfunction()
