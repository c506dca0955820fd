# What is printed on a terminal: colours, unless NO_COLOR is set, and a line of
# progress that is gone in the end. script(1) stands for the terminal.
#
#     cmake -DPROGRAM=... -DSCRIPT=... -DMODEL=... -DWORK=... -P terminalOutput.cmake
file(MAKE_DIRECTORY ${WORK})
string(ASCII 27 escape)
string(ASCII 13 return)

# run RESULT ENVIRONMENT... -- ARGUMENTS...: all that the terminal gets.
function(run result)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "ENVIRONMENT;ARGUMENTS")
    list(JOIN arg_ARGUMENTS " " arguments)
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env --unset=NO_COLOR ${arg_ENVIRONMENT}
            ${SCRIPT} -qec "${PROGRAM} ${arguments}" /dev/null
        OUTPUT_VARIABLE output ERROR_VARIABLE output INPUT_FILE /dev/null)
    set(${result} "${output}" PARENT_SCOPE)
endfunction()

run(colored ENVIRONMENT TERM=xterm ARGUMENTS check ${MODEL})
run(plain ENVIRONMENT TERM=xterm NO_COLOR=1 ARGUMENTS check ${MODEL})
run(dumb ENVIRONMENT TERM=dumb ARGUMENTS check ${MODEL})
if(NOT colored MATCHES "${escape}\\[1;31m4 errors${escape}\\[0m" OR
        NOT colored MATCHES "${escape}\\[1;33mwarning${escape}\\[0m")
    message(FATAL_ERROR "no colours: ${colored}")
endif()
foreach(output IN ITEMS plain dumb)
    if(${output} MATCHES "${escape}" OR NOT ${output} MATCHES "4 errors")
        message(FATAL_ERROR "${output}: ${${output}}")
    endif()
endforeach()

# A file's own colours never get through.
run(info ENVIRONMENT TERM=xterm ARGUMENTS info ${MODEL})
if(NOT info MATCHES "${escape}\\[1;31merror:${escape}\\[0m" OR NOT info MATCHES "red.x1b.31m_")
    message(FATAL_ERROR "${info}")
endif()

run(progress ENVIRONMENT TERM=xterm OBJ_ADAPTER_PROGRESS_WAIT=0 ARGUMENTS check ${MODEL})
if(NOT progress MATCHES "reading\\.\\.\\.[^\n]*${return} +${return}")
    message(FATAL_ERROR "no progress: ${progress}")
endif()
if(colored MATCHES "reading\\.\\.\\.")
    message(FATAL_ERROR "progress of a short import: ${colored}")
endif()
