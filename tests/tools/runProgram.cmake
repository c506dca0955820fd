# Runs a program and compares what it prints and returns with what is expected.
#
#     cmake -DPROGRAM=... -DARGUMENTS=... -DWORK=... -DEXPECTED=... -P runProgram.cmake
#     cmake -DPROGRAM=... -DARGUMENTS=... -DCODE=... -DPATTERN=... -P runProgram.cmake
#
# EXPECTED  a file with everything: the exit code, the error output and the
#           standard output; times stand as "TIME"
# PATTERN   for output that is not ours word for word: a regular expression
#           that the error output followed by the standard output must match
execute_process(COMMAND ${PROGRAM} ${ARGUMENTS}
    OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE code)
# Windows' text mode, where a program writes it.
if("${PROGRAM}" MATCHES "\\.exe$")
    string(REPLACE "\r\n" "\n" output "${output}")
    string(REPLACE "\r\n" "\n" errors "${errors}")
endif()
string(REGEX REPLACE " *[0-9]+\\.[0-9]+ ms" " TIME ms" output "${output}")
string(REGEX REPLACE "\"milliseconds\": [0-9.e-]+" "\"milliseconds\": TIME" output "${output}")

if(DEFINED EXPECTED)
    set(got "exit code ${code}\n--- error output\n${errors}--- standard output\n${output}")
    file(MAKE_DIRECTORY ${WORK})
    file(WRITE ${WORK}/got.txt "${got}")
    execute_process(COMMAND diff -u ${EXPECTED} ${WORK}/got.txt RESULT_VARIABLE difference)
    if(NOT difference EQUAL 0)
        message(FATAL_ERROR "- is expected, + was printed")
    endif()
else()
    if(NOT code STREQUAL CODE OR NOT "${errors}${output}" MATCHES "${PATTERN}")
        message(FATAL_ERROR "expected ${CODE} and ${PATTERN}\ngot ${code} and\n${errors}${output}")
    endif()
endif()
