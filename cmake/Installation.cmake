# Where the programs and modules go, below any prefix: hosts search lib/vst and lib/vst3, and
# tonvale-render takes presets from share/tonvale. And the Debian package of the same, which cpack
# makes.

if(TARGET tonvale-render)
    install(TARGETS tonvale-render)
    install(FILES ${TONVALE_BANK} DESTINATION share/tonvale)
endif()
install(TARGETS tonvale-vst2 LIBRARY DESTINATION lib/vst)
cmake_path(RELATIVE_PATH TONVALE_VST3_BUNDLE BASE_DIRECTORY ${CMAKE_BINARY_DIR} OUTPUT_VARIABLE bundle)
install(TARGETS tonvale-vst3 LIBRARY
    DESTINATION lib/${bundle}/Contents/${CMAKE_SYSTEM_PROCESSOR}-linux)
install(DIRECTORY ${TONVALE_VST3_BUNDLE}/Contents/Resources DESTINATION lib/${bundle}/Contents OPTIONAL)
# What is installed was built by name before; tests and benchmarks are not waited for.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tonvale)
set(CPACK_PACKAGE_VENDOR Quillfern)
set(CPACK_PACKAGE_CONTACT "Quillfern <info@quillfern.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "oscillator plugin with an exact pitch and a free shape")
set(CPACK_PACKAGE_DESCRIPTION
"Tonvale plays a test or oscillator signal: one cycle of a shape, drawn freely,
at an exact pitch, mixed with the input, on up to eight channels. The package
holds the plugin for VST2 and VST3 hosts, and tonvale-render, which plays MIDI
files through it from a terminal.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
