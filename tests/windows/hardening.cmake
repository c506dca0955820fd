# What was linked has the protections that cmake/hardening.cmake asks for.
#
#     cmake -DLIBRARY=... "-DPROGRAMS=..." -DOBJDUMP=... -P hardening.cmake
set(ENV{LC_ALL} C)

# Windows spreads addresses widely only of what prefers one beyond 4 GB.
set(beyond4GB "\nImageBase\t\t0*[1-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f][0-9a-f]")

foreach(file IN LISTS LIBRARY PROGRAMS)
    execute_process(COMMAND ${OBJDUMP} -p ${file}
        OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
    foreach(wanted IN ITEMS "\n\t+HIGH_ENTROPY_VA\n" "\n\t+DYNAMIC_BASE\n" "\n\t+NX_COMPAT\n"
            "${beyond4GB}" "Entry 5 [0-9a-f]+ 0*[1-9a-f][0-9a-f]* Base Relocation")
        if(NOT headers MATCHES "${wanted}")
            message(FATAL_ERROR "${file}: not found: ${wanted}\n${headers}")
        endif()
    endforeach()
    execute_process(COMMAND ${OBJDUMP} -h ${file}
        OUTPUT_VARIABLE sections COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "\n +[0-9]+ [^\n]*\n[^\n]*" sections "${sections}")
    foreach(section IN LISTS sections)
        if(section MATCHES "CODE" AND NOT section MATCHES "READONLY")
            message(FATAL_ERROR "${file}: code that can be written: ${section}")
        endif()
    endforeach()
endforeach()

execute_process(COMMAND ${OBJDUMP} -t ${LIBRARY} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
if(NOT symbols MATCHES " __stack_chk_fail\n")
    message(FATAL_ERROR "${LIBRARY} has no stack protector")
endif()
