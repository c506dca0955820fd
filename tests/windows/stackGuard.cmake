# The stack protector's guard is another one in every process, and who spoils it is
# stopped at once.
#
#     cmake -DPROGRAM=... -P stackGuard.cmake

function(get_guard variable)
    execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE output RESULT_VARIABLE code)
    # Of the code 0xC0000409 the last byte is left outside of Windows.
    if(NOT code EQUAL 9 AND NOT code EQUAL -1073740791)
        message(FATAL_ERROR "the program was not stopped: ${code}\n${output}")
    endif()
    if(NOT output MATCHES "^guard ([0-9a-f]+)\r?\n$")
        message(FATAL_ERROR "the program said:\n${output}")
    endif()
    set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

get_guard(first)
get_guard(second)
if(first STREQUAL second)
    message(FATAL_ERROR "the guard is always ${first}")
endif()
foreach(guard IN ITEMS ${first} ${second})
    if(NOT guard MATCHES "^[0-9a-f]+00$" OR guard MATCHES "^0+$")
        message(FATAL_ERROR "the guard is ${guard}")
    endif()
endforeach()
