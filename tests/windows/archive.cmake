# Makes the archive for hosts and builds the example against what is in it, as a
# host's programmer would: by the compiler alone, and by find_package.
#
#     cmake -DBUILD=... -DSOURCE=... -DWORK=... -DVERSION=... -DEMULATOR=...
#           -DCOMPILER=... -DTOOLCHAIN=... -DGENERATOR=... -P archive.cmake
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
set(name obj_adapter-${VERSION}-windows-x64-mingw)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(run_example program)
    execute_process(
        COMMAND ${CMAKE_COMMAND} "-DPROGRAM=${EMULATOR};${program}"
            -DARGUMENTS=${SOURCE}/examples/scene/scene.obj -DWORK=${WORK}/output
            -DEXPECTED=${SOURCE}/tests/tools/firstImport.expected
            -P ${SOURCE}/tests/tools/runProgram.cmake
        COMMAND_ERROR_IS_FATAL ANY)
endfunction()

find_program(cpack cpack REQUIRED)
run(${cpack} --config ${BUILD}/CPackConfig.cmake -B ${WORK}/made)
execute_process(COMMAND ${CMAKE_COMMAND} -E tar xf ${WORK}/made/${name}.zip
    WORKING_DIRECTORY ${WORK} COMMAND_ERROR_IS_FATAL ANY)
set(archive ${WORK}/${name})

# Nothing but what a host needs.
file(GLOB_RECURSE files RELATIVE ${archive} ${archive}/*)
list(FILTER files EXCLUDE REGEX "^lib/(cmake/obj_adapter/.*\\.cmake|pkgconfig/obj_adapter\\.pc)$")
file(GLOB_RECURSE headers RELATIVE ${SOURCE} ${SOURCE}/include/*.h)
set(expected README.md bin/obj_adapter.dll bin/obj_adapter_c.dll
    firstImport.cpp hostGuide.md ${headers}
    lib/obj_adapter.lib lib/obj_adapter_c.lib)
list(SORT expected)
list(SORT files)
if(NOT files STREQUAL expected)
    message(FATAL_ERROR "in the archive: ${files}\nexpected: ${expected}")
endif()

# By the compiler alone.
file(MAKE_DIRECTORY ${WORK}/plain)
run(${COMPILER} -std=c++17 -Wall -Wextra -Wpedantic -Werror -static
    ${archive}/firstImport.cpp -I${archive}/include -L${archive}/lib -lobj_adapter
    -o ${WORK}/plain/firstImport.exe)
file(COPY ${archive}/bin/obj_adapter.dll DESTINATION ${WORK}/plain)
run_example(${WORK}/plain/firstImport.exe)

# The ten lines of the archive's README.
execute_process(
    COMMAND ${CMAKE_COMMAND} -DREADME=${archive}/README.md
        -DSCENE=${SOURCE}/examples/scene/scene.obj -DWORK=${WORK}/readmeHost
        -DCOMPILER=${COMPILER}
        "-DFLAGS=-static -I${archive}/include -L${archive}/lib -lobj_adapter"
        "-DEMULATOR=${EMULATOR}" -DLIBRARY=${archive}/bin/obj_adapter.dll
        -P ${SOURCE}/tests/installed/readmeHost.cmake
    COMMAND_ERROR_IS_FATAL ANY)

# By find_package. Packages are looked for below the target's own root alone, so
# the archive is a root as well.
run(${CMAKE_COMMAND} -S ${SOURCE}/examples -B ${WORK}/package -G ${GENERATOR}
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}
    -DCMAKE_EXE_LINKER_FLAGS=-static -Dobj_adapter_DIR=${archive}/lib/cmake/obj_adapter)
run(${CMAKE_COMMAND} --build ${WORK}/package)
file(COPY ${archive}/bin/obj_adapter.dll DESTINATION ${WORK}/package)
run_example(${WORK}/package/firstImport.exe)
