# Runs growth_probe under callgrind and fails if a doubling of the input costs more
# than so many times the instructions.
#
# cmake -DVALGRIND= -DPROBE= -DKIND= -DWORK= -DLIMIT= (in hundredths) -P growth.cmake

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
execute_process(
    COMMAND ${VALGRIND} --tool=callgrind --instr-atstart=no
        --callgrind-out-file=${WORK}/counts ${PROBE} ${KIND}
    RESULT_VARIABLE code OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT code EQUAL 0)
    message(FATAL_ERROR "${KIND} failed (${code}):\n${output}")
endif()

set(before)
foreach(dump RANGE 1 3)
    file(STRINGS ${WORK}/counts.${dump} totals REGEX "^totals: ")
    string(REGEX MATCH "[0-9]+" instructions "${totals}")
    if(NOT instructions)
        message(FATAL_ERROR "${KIND}: no count in ${WORK}/counts.${dump}:\n${output}")
    endif()
    if(before)
        math(EXPR hundredths "${instructions} * 100 / ${before}")
        message(STATUS "${KIND}: ${before} to ${instructions} instructions, ${hundredths}/100")
        if(hundredths GREATER LIMIT)
            message(SEND_ERROR "${KIND}: more than ${LIMIT}/100")
        endif()
        # Twice the input in less than one and a half times the instructions means
        # that most of the count is something else.
        if(hundredths LESS 150)
            message(SEND_ERROR "${KIND}: the input does not count")
        endif()
    endif()
    set(before ${instructions})
endforeach()
