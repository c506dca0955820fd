# The command line takes names that are not ASCII, with blanks and without.
#
#     cmake -DPROGRAM=... -DSAMPLE=... -DWORK=... -P utf8Names.cmake
file(REMOVE_RECURSE ${WORK})
foreach(name IN ITEMS "größe" "zwei Wörter" "模型" "😀")
    file(MAKE_DIRECTORY "${WORK}/${name}")
    configure_file(${SAMPLE} "${WORK}/${name}/${name}.obj" COPYONLY)
    execute_process(COMMAND ${PROGRAM} info "${WORK}/${name}/${name}.obj"
        OUTPUT_VARIABLE output ERROR_VARIABLE errors RESULT_VARIABLE code)
    if(NOT code EQUAL 0 OR NOT output MATCHES "faces +4")
        message(FATAL_ERROR "${name}: ${code}\n${errors}${output}")
    endif()
    string(FIND "${output}" " ${name}" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "no group is called ${name}:\n${output}")
    endif()
endforeach()
