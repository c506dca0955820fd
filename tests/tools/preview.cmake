# Draws a model and compares the file's hash: the same bytes on every platform. Who
# changes how pictures look on purpose looks at the new one and sets its hash here.
#
#     cmake -DPROGRAM=... -DMODEL=... -DOPTIONS=... -DWORK=... -DHASH=... -P preview.cmake
#
# PICTURE=...  instead of HASH: the file that it has to equal
file(MAKE_DIRECTORY ${WORK})
file(REMOVE ${WORK}/picture.png)
execute_process(COMMAND ${PROGRAM} preview ${MODEL} -o ${WORK}/picture.png ${OPTIONS}
    ERROR_VARIABLE errors RESULT_VARIABLE code)
if(NOT code EQUAL 0)
    message(FATAL_ERROR "exit code ${code}\n${errors}")
endif()
if(DEFINED PICTURE)
    file(SHA256 ${PICTURE} HASH)
endif()
file(SHA256 ${WORK}/picture.png hash)
if(NOT hash STREQUAL HASH)
    message(FATAL_ERROR "${WORK}/picture.png has the hash ${hash}, not ${HASH}")
endif()
