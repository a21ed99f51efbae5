# Installs the build folder `build` into a scratch prefix and compares the files with those that hosts
# search for.
set(prefix ${build}/tests/install/prefix)
set(bundle lib/vst3/Tonvale.vst3/Contents)
set(expected bin/tonvale-render lib/vst/Tonvale.so ${bundle}/Resources/moduleinfo.json
    ${bundle}/${architecture}-linux/Tonvale.so)

file(REMOVE_RECURSE ${prefix})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${build} --prefix ${prefix}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE found RELATIVE ${prefix} ${prefix}/*)
list(SORT found)
if(NOT found STREQUAL expected)
    message(FATAL_ERROR "installed ${found}\nexpected  ${expected}")
endif()
