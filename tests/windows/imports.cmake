# The DLL needs DLLs of the system alone, and holds no time of its linking.
#
#     cmake -DLIBRARY=... -DOBJDUMP=... -P imports.cmake
set(ENV{LC_ALL} C)
execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY}
    OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCHALL "DLL Name: [^\n]*" imports "${headers}")
list(TRANSFORM imports REPLACE "DLL Name: " "")
list(TRANSFORM imports TOLOWER)
list(SORT imports)
if(NOT imports STREQUAL "kernel32.dll;msvcrt.dll")
    message(FATAL_ERROR "the DLL needs: ${imports}")
endif()
if(NOT headers MATCHES "Time/Date\t*Thu Jan  ?1 00:00:00 1970")
    string(REGEX MATCH "Time/Date[^\n]*" time "${headers}")
    message(FATAL_ERROR "the DLL says when it was linked: ${time}")
endif()
