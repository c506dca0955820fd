# The man page is free of faults and names each verb and option; the completion
# offers them.
#
#     cmake -DPROGRAM=... -DWORK=... -P generatedTexts.cmake
file(MAKE_DIRECTORY ${WORK})
execute_process(COMMAND ${PROGRAM} --generate man OUTPUT_FILE ${WORK}/obj_adapter.1
    COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${PROGRAM} --generate bash-completion OUTPUT_FILE ${WORK}/completion
    COMMAND_ERROR_IS_FATAL ANY)

file(READ ${WORK}/obj_adapter.1 page)
set(verbs info tree check convert preview)
foreach(verb IN LISTS verbs)
    execute_process(COMMAND ${PROGRAM} ${verb} --help OUTPUT_VARIABLE help
        COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "  (-[a-z], )?--[a-z-]+" options "${help}")
    if(NOT options)
        message(FATAL_ERROR "${verb} --help names no options:\n${help}")
    endif()
    foreach(option IN LISTS options)
        string(REGEX REPLACE "^.*--" "--" option "${option}")
        list(APPEND optionsOf_${verb} ${option})
        string(REPLACE "-" "\\-" escaped "${option}")
        string(FIND "${page}" "\\fB${escaped}\\fR" at)
        if(at EQUAL -1)
            message(FATAL_ERROR "the man page does not know ${option}")
        endif()
    endforeach()
endforeach()

find_program(man man)
if(man)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C MANWIDTH=80 ${man} --warnings -l
            ${WORK}/obj_adapter.1
        OUTPUT_VARIABLE shown ERROR_VARIABLE warnings COMMAND_ERROR_IS_FATAL ANY)
    if(NOT warnings STREQUAL "" OR NOT shown MATCHES "obj_adapter preview \\[OPTIONS\\] FILE.obj")
        message(FATAL_ERROR "man: ${warnings}\n${shown}")
    endif()
endif()

# complete RESULT WORDS...: what bash offers for the last of the words.
find_program(bash bash REQUIRED)
function(complete result)
    list(LENGTH ARGN count)
    math(EXPR last "${count} - 1")
    set(words)
    foreach(word IN LISTS ARGN)
        string(APPEND words " '${word}'")
    endforeach()
    execute_process(COMMAND ${bash} -c "source ${WORK}/completion
        COMP_WORDS=(${words}); COMP_CWORD=${last}; _obj_adapter; echo \"\${COMPREPLY[*]}\""
        OUTPUT_VARIABLE offered OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    set(${result} "${offered}" PARENT_SCOPE)
endfunction()

function(expect_offer expected)
    complete(offered ${ARGN})
    if(NOT offered STREQUAL expected)
        message(FATAL_ERROR "${ARGN}: ${offered}\nnot ${expected}")
    endif()
endfunction()

expect_offer("convert" obj_adapter conv)
expect_offer("" obj_adapter info hou)
file(MAKE_DIRECTORY "${WORK}/some folder")
file(WRITE "${WORK}/some house.obj" "")
file(WRITE "${WORK}/some house.mtl" "")
expect_offer("${WORK}/some house.obj ${WORK}/some folder" obj_adapter info ${WORK}/some)
expect_offer("" obj_adapter preview a.obj -o ${WORK}/some)
expect_offer("z" obj_adapter preview a.obj --up z)
expect_offer("FACE_COUNT" obj_adapter info --subdivide F)
foreach(verb IN LISTS verbs)
    list(JOIN optionsOf_${verb} " " options)
    expect_offer("${options}" obj_adapter ${verb} -)
endforeach()
