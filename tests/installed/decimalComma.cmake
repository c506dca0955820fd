# The tests of hosts whose C locale writes a comma in numbers, in such a locale made for
# them: without one they are skipped, which counts as a failure here.
#
#     cmake -DLOCALEDEF=... -DPROGRAMS=... -DWORK=... -P decimalComma.cmake
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
# What it says of the locale's own gaps is of no concern.
execute_process(COMMAND ${LOCALEDEF} -i de_DE -f UTF-8 ${WORK}/de_DE.UTF-8
    OUTPUT_QUIET ERROR_QUIET)
if(NOT EXISTS ${WORK}/de_DE.UTF-8)
    message(FATAL_ERROR "${LOCALEDEF} made no locale")
endif()
foreach(program IN LISTS PROGRAMS)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env LOCPATH=${WORK}
            ${program} --gtest_filter=*localeOfTheCLibrary*:*hasALocaleOfTheCLibrary*
        OUTPUT_VARIABLE text RESULT_VARIABLE code)
    if(NOT code EQUAL 0 OR NOT text MATCHES "\\[  PASSED  \\] [1-9]" OR text MATCHES "SKIPPED")
        message(FATAL_ERROR "${program}: ${code}\n${text}")
    endif()
endforeach()
