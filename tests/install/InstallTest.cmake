# Installs the build folder `build` into a scratch prefix and compares the files with those that hosts
# search for.
set(prefix ${build}/tests/install/prefix)
set(bundle lib/vst3/Tonvale.vst3/Contents)
set(bank share/tonvale/Tonvalepresets.xml)
set(expected bin/tonvale-render lib/vst/Tonvale.so ${bundle}/Resources/moduleinfo.json
    ${bundle}/${architecture}-linux/Tonvale.so ${bank})

file(REMOVE_RECURSE ${prefix})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${build} --prefix ${prefix}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB_RECURSE found RELATIVE ${prefix} ${prefix}/*)
list(SORT found)
if(NOT found STREQUAL expected)
    message(FATAL_ERROR "installed ${found}\nexpected  ${expected}")
endif()

# The presets beside the program serve one who has none; then they are added to those of the user,
# once and without a change to what the user has.
set(home ${build}/tests/install/home)
set(presets ${home}/.local/share/Quillfern/Tonvale/Tonvalepresets.xml)
function(render output)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env --unset=QUILLFERN_DATA --unset=XDG_DATA_HOME HOME=${home}
                ${prefix}/bin/tonvale-render ${ARGN}
        OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    set(${output} "${text}" PARENT_SCOPE)
endfunction()
function(expect what present wanted)
    if(NOT present STREQUAL wanted)
        message(FATAL_ERROR "${what}: ${present}\nexpected ${wanted}")
    endif()
endfunction()

file(REMOVE_RECURSE ${home})
file(MAKE_DIRECTORY ${home})
render(factory --presets)
render(said --install-presets ${prefix}/${bank})
render(listed --presets)
expect("a home without presets" "${listed}" "${factory}")

string(CONCAT own "<presets><preset name=\"Mine\"/><Directory Name=\"Basses\">"
    "<preset name=\"My bass\"/></Directory></presets>")
file(WRITE ${presets} "${own}")
render(said --install-presets ${prefix}/${bank})
render(listed --presets)
string(REGEX REPLACE "Basses/[^\n]*\n" "" others "${factory}")
expect("a home with presets" "${listed}" "Mine\nBasses/My bass\n${others}")
file(READ ${presets} before)
render(said --install-presets ${prefix}/${bank})
file(READ ${presets} after)
expect("a second time" "${after}" "${before}")
