# What strangers do with an installed library or an unpacked package: included by the
# tests that install or unpack. PREFIX in a function is where "include" is.
#
# Asks for SOURCE, WORK, LIBDIR, VERSION, COMPILER, C_COMPILER, GENERATOR and, if they
# are needed: FLAGS for compiling and linking hosts, EMULATOR in front of programs,
# HOST_OPTIONS for cmake.
set(scene ${SOURCE}/examples/scene/scene.obj)
set(cppExample ${SOURCE}/examples/firstImport.cpp)
set(cExample ${SOURCE}/examples/otherLanguages/firstImport.c)
set(cppExpected ${SOURCE}/tests/tools/firstImport.expected)
set(cExpected ${SOURCE}/tests/cInterface/firstImport.expected)
set(cppWarnings -std=c++17 -Wall -Wextra -Wpedantic -Werror)
set(cWarnings -std=c99 -Wall -Wextra -Wpedantic -Werror)
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

function(expect_same what got expected)
    list(SORT got)
    list(SORT expected)
    if(NOT got STREQUAL expected)
        set(missing ${expected})
        list(REMOVE_ITEM missing ${got} "")
        list(REMOVE_ITEM got ${expected} "")
        message(FATAL_ERROR "${what}: missing: ${missing}\nmore than expected: ${got}")
    endif()
endfunction()

# A program of an example prints what it always prints.
function(run_host program expected)
    # Not by run(), which would take the list apart.
    execute_process(
        COMMAND ${CMAKE_COMMAND} "-DPROGRAM=${EMULATOR};${program}" -DARGUMENTS=${scene}
            -DWORK=${WORK}/output -DEXPECTED=${expected}
            -P ${SOURCE}/tests/tools/runProgram.cmake
        COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Windows looks for DLLs beside the program; elsewhere the path is asked.
macro(lend_libraries prefix folder)
    file(GLOB dlls ${prefix}/bin/*.dll)
    if(dlls)
        file(COPY ${dlls} DESTINATION ${folder})
    else()
        set(ENV{LD_LIBRARY_PATH} ${prefix}/${LIBDIR})
    endif()
endmacro()

# configure_host(source build prefix option...)
function(configure_host source build prefix)
    run(${CMAKE_COMMAND} -S ${source} -B ${build} -G ${GENERATOR} -DCMAKE_BUILD_TYPE=Release
        -DCMAKE_PREFIX_PATH=${prefix} ${HOST_OPTIONS} ${ARGN})
    # The one of this prefix, and not one that the system happens to have.
    file(STRINGS ${build}/CMakeCache.txt found REGEX "^obj_adapter_DIR:")
    string(FIND "${found}" "=${prefix}/${LIBDIR}/cmake/" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "found another package: ${found}")
    endif()
    run(${CMAKE_COMMAND} --build ${build})
endfunction()

function(check_find_package prefix work)
    list(JOIN FLAGS " " flags)
    configure_host(${SOURCE}/examples ${work}/cpp ${prefix}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_FLAGS=${flags})
    configure_host(${SOURCE}/tests/installed/cHost ${work}/c ${prefix}
        -DCMAKE_C_COMPILER=${C_COMPILER} -DCMAKE_C_FLAGS=${flags} -DEXAMPLE=${cExample})
    if(EMULATOR)
        lend_libraries(${prefix} ${work}/cpp)
        lend_libraries(${prefix} ${work}/c)
    endif()
    file(GLOB programs ${work}/cpp/firstImport ${work}/cpp/firstImport.exe)
    run_host("${programs}" ${cppExpected})
    file(GLOB programs ${work}/c/cHost ${work}/c/cHost.exe)
    run_host("${programs}" ${cExpected})
endfunction()

# Both hosts by a compiler's line; the flags stand behind the source.
function(compile_and_run prefix work cppFlags cFlags)
    file(MAKE_DIRECTORY ${work})
    run(${COMPILER} ${cppWarnings} ${cppExample} -o ${work}/cpp.exe ${FLAGS} ${cppFlags})
    run(${C_COMPILER} ${cWarnings} ${cExample} -o ${work}/c.exe ${FLAGS} ${cFlags})
    lend_libraries(${prefix} ${work})
    run_host(${work}/cpp.exe ${cppExpected})
    run_host(${work}/c.exe ${cExpected})
endfunction()

function(check_compiler_line prefix work)
    set(place -I${prefix}/include -L${prefix}/${LIBDIR})
    compile_and_run(${prefix} ${work} "${place};-lobj_adapter" "${place};-lobj_adapter_c")
endfunction()

function(ask_pkg_config result)
    execute_process(COMMAND pkg-config ${ARGN}
        OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
    set(${result} "${answer}" PARENT_SCOPE)
endfunction()

function(check_pkg_config prefix work)
    # Instead of the system's directories, not beside them.
    set(ENV{PKG_CONFIG_LIBDIR} ${prefix}/${LIBDIR}/pkgconfig)
    foreach(library IN ITEMS obj_adapter obj_adapter_c)
        ask_pkg_config(version --modversion ${library})
        if(NOT version STREQUAL VERSION)
            message(FATAL_ERROR "pkg-config gives the version ${version}, not ${VERSION}")
        endif()
        ask_pkg_config(flags --cflags --libs ${library})
        separate_arguments(flagsOf_${library} UNIX_COMMAND "${flags}")
    endforeach()
    compile_and_run(${prefix} ${work} "${flagsOf_obj_adapter}" "${flagsOf_obj_adapter_c}")
endfunction()

# The program finds the library where both are, from a folder that is neither's.
function(check_tool prefix)
    file(GLOB program ${prefix}/bin/obj_adapter ${prefix}/bin/obj_adapter.exe)
    set(ENV{LD_LIBRARY_PATH})
    execute_process(COMMAND ${EMULATOR} ${program} info ${scene} WORKING_DIRECTORY /
        OUTPUT_VARIABLE output ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
    if(NOT output MATCHES "faces +394")
        message(FATAL_ERROR "${program}:\n${output}")
    endif()
endfunction()

# Readable, without a word of complaint.
function(check_man_page page)
    find_program(manProgram man)
    if(NOT manProgram)
        message(STATUS "the man page is not read: man is missing")
        return()
    endif()
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env LC_ALL=C MANWIDTH=80 ${manProgram} --warnings -l ${page}
        OUTPUT_VARIABLE shown ERROR_VARIABLE complaints COMMAND_ERROR_IS_FATAL ANY)
    if(NOT complaints STREQUAL "" OR NOT shown MATCHES "obj_adapter info \\[OPTIONS\\] FILE.obj")
        message(FATAL_ERROR "man: ${complaints}\n${shown}")
    endif()
endfunction()

# The headers and the files for find_package and pkg-config, as they are installed.
function(files_for_hosts result)
    file(GLOB_RECURSE files RELATIVE ${SOURCE} ${SOURCE}/include/*.h)
    foreach(library IN ITEMS obj_adapter obj_adapter_c)
        list(APPEND files ${LIBDIR}/pkgconfig/${library}.pc)
    endforeach()
    string(TOLOWER ${CONFIGURATION} configuration)
    foreach(part IN ITEMS Config ConfigVersion Targets Targets-${configuration})
        list(APPEND files ${LIBDIR}/cmake/obj_adapter/obj_adapter${part}.cmake)
    endforeach()
    set(${result} ${files} PARENT_SCOPE)
endfunction()

# The pages and examples, as they lie below the folder for them.
function(pages_for_hosts result)
    file(GLOB_RECURSE examples RELATIVE ${SOURCE} ${SOURCE}/examples/*)
    set(${result} README.md CHANGELOG.md SECURITY.md docs/hostGuide.md docs/performance.md
        docs/pictures/scene.png docs/repairs.md docs/toolFormats.md
        docs/toolOutput.schema.json ${examples} PARENT_SCOPE)
endfunction()

# Everything that a build with the program installs on systems with lib*.so.
function(files_of_elf_system result)
    files_for_hosts(files)
    foreach(library IN ITEMS obj_adapter obj_adapter_c)
        string(REGEX MATCH "^[0-9]+" interface ${VERSION})
        foreach(ending IN ITEMS "" .${interface} .${VERSION})
            list(APPEND files ${LIBDIR}/lib${library}.so${ending})
        endforeach()
    endforeach()
    pages_for_hosts(pages)
    list(TRANSFORM pages PREPEND share/doc/obj_adapter/)
    list(APPEND files ${pages} bin/obj_adapter share/man/man1/obj_adapter.1
        share/bash-completion/completions/obj_adapter)
    set(${result} ${files} PARENT_SCOPE)
endfunction()
