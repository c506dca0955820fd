# Compares the DLL's export table with the list that is kept of the interface: the
# same one as on Linux, as both compilers name functions alike.
#
#     cmake -DLIBRARY=... -DEXPECTED=... -DWORK=... -DOBJDUMP=... -P exports.cmake
file(MAKE_DIRECTORY ${WORK})
find_program(cxxFilt c++filt REQUIRED)
set(ENV{LC_ALL} C)

execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY}
    OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table\n(\t\\[ *[0-9]+\\] [^\n]*\n)*" table "${headers}")
string(REGEX MATCHALL "\\] _[^\n]*" names "${table}")
string(REGEX REPLACE "\\] " "" names "${names}")
list(JOIN names "\n" names)
file(WRITE ${WORK}/names.txt "${names}\n")
execute_process(COMMAND ${cxxFilt} INPUT_FILE ${WORK}/names.txt COMMAND sort -u
    OUTPUT_FILE ${WORK}/exported.txt COMMAND_ERROR_IS_FATAL ANY)
# Windows' size_t has another name than that of Linux, which is in the list.
file(READ ${WORK}/exported.txt exported)
string(REPLACE "unsigned long long" "unsigned long" exported "${exported}")
file(WRITE ${WORK}/exported.txt "${exported}")

# The list's comments are for people.
file(READ ${EXPECTED} expected)
string(REGEX REPLACE "#[^\n]*\n" "" expected "${expected}")
file(WRITE ${WORK}/expected.txt "${expected}")
execute_process(COMMAND diff -U 0 ${WORK}/expected.txt ${WORK}/exported.txt
    RESULT_VARIABLE difference)
if(NOT difference EQUAL 0)
    message(FATAL_ERROR
        "- is in ${EXPECTED} and not exported; + is exported and not in the list")
endif()

# Every entry of the table was read: none has a name of another form.
string(REGEX MATCHALL "\n\t\\[ *[0-9]+\\] " entries "${table}")
list(LENGTH entries entryCount)
file(STRINGS ${WORK}/names.txt nameLines)
list(LENGTH nameLines nameCount)
if(NOT entryCount EQUAL nameCount OR nameCount EQUAL 0)
    message(FATAL_ERROR "${entryCount} entries, ${nameCount} of them C++ names:\n${table}")
endif()
