# Installs the library and builds the example against it as a stranger would, by
# find_package and by pkg-config, where it was installed and after a move.
#
#     cmake -DBUILD=... -DSOURCE=... -DWORK=... -DLIBDIR=... -DVERSION=...
#           -DCOMPILER=... -DFLAGS=... -DGENERATOR=... -DTOOL=... -P installedPackage.cmake
#
# TOOL  whether the build has the command-line program
set(example ${SOURCE}/examples)
set(scene ${SOURCE}/examples/scene/scene.obj)

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(run_example program)
    run(${CMAKE_COMMAND} -DPROGRAM=${program} -DARGUMENTS=${scene} -DWORK=${WORK}/output
        -DEXPECTED=${SOURCE}/tests/tools/firstImport.expected
        -P ${SOURCE}/tests/tools/runProgram.cmake)
endfunction()

# The program finds the library where both were installed, and has its man page and
# its completion beside it.
function(check_tool prefix)
    execute_process(COMMAND ${prefix}/bin/obj_adapter info ${scene}
        OUTPUT_VARIABLE output ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(GLOB_RECURSE files RELATIVE ${prefix} ${prefix}/bin/* ${prefix}/share/*)
    list(SORT files)
    set(expected bin/obj_adapter share/bash-completion/completions/obj_adapter
        share/man/man1/obj_adapter.1)
    if(NOT output MATCHES "faces +394" OR NOT files STREQUAL expected)
        message(FATAL_ERROR "installed: ${files}\n${output}")
    endif()
endfunction()

# Nothing but what a host needs, and the headers as they are here.
function(check_files prefix)
    file(GLOB top RELATIVE ${prefix} ${prefix}/*)
    file(GLOB_RECURSE installed RELATIVE ${prefix}/include ${prefix}/include/*)
    file(GLOB_RECURSE exported RELATIVE ${SOURCE}/include ${SOURCE}/include/*.h)
    if(TOOL)
        list(REMOVE_ITEM top bin share)
        check_tool(${prefix})
    endif()
    if(NOT top STREQUAL "include;lib" AND NOT top STREQUAL "include;${LIBDIR}")
        message(FATAL_ERROR "installed: ${top}")
    endif()
    if(NOT installed STREQUAL exported)
        message(FATAL_ERROR "headers: ${exported}\ninstalled: ${installed}")
    endif()
endfunction()

function(check_find_package prefix work)
    run(${CMAKE_COMMAND} -S ${example} -B ${work} -G ${GENERATOR}
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_FLAGS=${FLAGS}
        -DCMAKE_PREFIX_PATH=${prefix})
    # The one of this prefix, and not one that the system happens to have.
    file(STRINGS ${work}/CMakeCache.txt found REGEX "^obj_adapter_DIR:")
    string(FIND "${found}" "=${prefix}/" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "found another package: ${found}")
    endif()
    run(${CMAKE_COMMAND} --build ${work})
    run_example(${work}/firstImport)
endfunction()

function(ask_pkg_config result)
    execute_process(COMMAND pkg-config ${ARGN} obj_adapter
        OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
    set(${result} "${answer}" PARENT_SCOPE)
endfunction()

function(check_pkg_config prefix work)
    # Instead of the system's directories, not beside them.
    set(ENV{PKG_CONFIG_LIBDIR} ${prefix}/${LIBDIR}/pkgconfig)
    ask_pkg_config(version --modversion)
    if(NOT version STREQUAL VERSION)
        message(FATAL_ERROR "pkg-config gives the version ${version}, not ${VERSION}")
    endif()
    ask_pkg_config(packageFlags --cflags --libs)
    separate_arguments(packageFlags UNIX_COMMAND "${packageFlags}")
    separate_arguments(flags UNIX_COMMAND "${FLAGS}")
    file(MAKE_DIRECTORY ${work})
    run(${COMPILER} -std=c++17 ${flags} ${example}/firstImport.cpp
        -o ${work}/firstImport ${packageFlags})
    set(ENV{LD_LIBRARY_PATH} ${prefix}/${LIBDIR})
    run_example(${work}/firstImport)
endfunction()

file(REMOVE_RECURSE ${WORK})
set(first "${WORK}/first place")
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${first})
check_files(${first})
check_find_package(${first} ${WORK}/cmakeFirst)
check_pkg_config(${first} ${WORK}/pkgConfigFirst)

set(second "${WORK}/second place/deeper")
file(MAKE_DIRECTORY "${WORK}/second place")
file(RENAME ${first} ${second})
check_files(${second})
check_find_package(${second} ${WORK}/cmakeSecond)
check_pkg_config(${second} ${WORK}/pkgConfigSecond)
