# Compares what a shared library exports with the list that is kept of it.
#
#     cmake -DLIBRARY=... -DEXPECTED=... -DWORK=... -DNM=... -P exportedSymbols.cmake
file(MAKE_DIRECTORY ${WORK})
find_program(cxxFilt c++filt REQUIRED)

# The list's comments are for people.
file(READ ${EXPECTED} expected)
string(REGEX REPLACE "#[^\n]*\n" "" expected "${expected}")
file(WRITE ${WORK}/expected.txt "${expected}")

set(ENV{LC_ALL} C)
execute_process(
    COMMAND ${NM} -D --defined-only --format=just-symbols ${LIBRARY}
    COMMAND ${cxxFilt}
    COMMAND sort -u
    OUTPUT_FILE ${WORK}/exported.txt
    COMMAND_ERROR_IS_FATAL ANY)

execute_process(
    COMMAND diff -U 0 ${WORK}/expected.txt ${WORK}/exported.txt
    RESULT_VARIABLE difference)
if(NOT difference EQUAL 0)
    message(FATAL_ERROR
        "- is in ${EXPECTED} and not exported; + is exported and not in the list")
endif()
