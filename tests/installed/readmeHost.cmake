# Compiles the host of the README and runs it.
#
#     cmake -DREADME=... -DSCENE=... -DWORK=... -DCOMPILER=... "-DFLAGS=..."
#           [-DEMULATOR=...] [-DLIBRARY=file to put beside the program] -P readmeHost.cmake
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK}/models)
get_filename_component(sceneFolder ${SCENE} DIRECTORY)
file(COPY ${sceneFolder}/scene.mtl DESTINATION ${WORK}/models)
configure_file(${SCENE} ${WORK}/models/cube.obj COPYONLY)

file(READ ${README} text)
# The first C++ block. CMake's lists end at semicolons, so no list is made of it.
string(REGEX MATCH "```cpp\n([^`]*)```" block "${text}")
if(block STREQUAL "")
    message(FATAL_ERROR "no C++ in ${README}")
endif()
file(WRITE ${WORK}/host.cpp "${CMAKE_MATCH_1}")

separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")
execute_process(COMMAND ${COMPILER} -std=c++17 -Wall -Wextra -Wpedantic -Werror
    ${WORK}/host.cpp ${FLAGS} -o ${WORK}/host.exe
    COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
if(LIBRARY)
    file(COPY ${LIBRARY} DESTINATION ${WORK})
endif()
execute_process(COMMAND ${EMULATOR} ${WORK}/host.exe
    WORKING_DIRECTORY ${WORK} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\r" "" output "${output}")
if(NOT output MATCHES "Obj data import complete\\.\n394 faces\n$")
    message(FATAL_ERROR "the host said:\n${output}")
endif()
