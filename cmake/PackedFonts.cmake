# Fonts that go into the resource pack as "fonts/...", with the texts of their licences. They come
# from the installed packages when the pack is built, and only then: TONVALE_FONTS is the folder
# that holds them, TONVALE_FONT_FILES what is in it.

set(TONVALE_FONTS ${PROJECT_BINARY_DIR}/packed-fonts)
set(TONVALE_FONT_FILES)

# packed_font(PACKAGE FILE NAME): FILE below /usr/share, installed by PACKAGE, as "fonts/NAME".
function(packed_font package file name)
    set(path /usr/share/${file})
    if(NOT EXISTS ${path})
        message(FATAL_ERROR "${path} is missing; it is in the package ${package}")
    endif()
    set(copy ${TONVALE_FONTS}/fonts/${name})
    configure_file(${path} ${copy} COPYONLY)
    set(TONVALE_FONT_FILES ${TONVALE_FONT_FILES} ${copy} PARENT_SCOPE)
endfunction()

packed_font(fonts-inter fonts/opentype/inter/Inter-Regular.otf Inter-Regular.otf)
packed_font(fonts-inter fonts/opentype/inter/Inter-SemiBold.otf Inter-SemiBold.otf)
packed_font(fonts-inter doc/fonts-inter/copyright Inter-licence.txt)
packed_font(fonts-dejavu-core fonts/truetype/dejavu/DejaVuSans.ttf DejaVuSans.ttf)
packed_font(fonts-dejavu-core fonts/truetype/dejavu/DejaVuSansMono.ttf DejaVuSansMono.ttf)
packed_font(fonts-dejavu-core doc/fonts-dejavu-core/copyright DejaVu-licence.txt)
