# The object library tonvale_resources: resources/ and the fonts as the pack inside whatever links it.
# Modules and programs have to link it themselves, as an object does not travel through a static
# library.

include(PackedFonts)

set(pack_runner)
if(CMAKE_CROSSCOMPILING)
    set(pack_runner ${CMAKE_CROSSCOMPILING_EMULATOR})
    if(NOT pack_runner)
        message(FATAL_ERROR "tonvale-pack runs during the build, which needs wine64 here")
    endif()
elseif(TONVALE_SANITIZERS MATCHES thread)
    set(pack_runner setarch -R) # its shadow memory does not fit every address layout
endif()

set(pack_file ${PROJECT_BINARY_DIR}/resources.pack)
file(GLOB_RECURSE pack_contents CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/*)
add_custom_command(OUTPUT ${pack_file}
    COMMAND ${pack_runner} $<TARGET_FILE:tonvale-pack>
        ${PROJECT_SOURCE_DIR}/resources ${TONVALE_FONTS} ${pack_file}
    DEPENDS tonvale-pack ${pack_contents} ${TONVALE_FONT_FILES}
    COMMENT "Packing resources"
    VERBATIM)

add_library(tonvale_resources OBJECT src/foundation/modules/InnerPack.cpp)
target_link_libraries(tonvale_resources PUBLIC tonvale_foundation)
set_source_files_properties(src/foundation/modules/InnerPack.cpp PROPERTIES
    COMPILE_DEFINITIONS TONVALE_PACK_FILE="${pack_file}"
    OBJECT_DEPENDS ${pack_file})
