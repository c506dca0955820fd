# Hosts built with the unpacked .zip as a host's programmer would: by find_package, by
# pkg-config and by a compiler's line, with the import libraries and with such made
# anew from the .def files; the program runs from the unpacked folder alone.
#
#     cmake -DSOURCE=... -DPREFIX=... -DWORK=... -DLIBDIR=... -DVERSION=...
#           -DCONFIGURATION=... -DEMULATOR=... -DCOMPILER=... -DC_COMPILER=...
#           -DTOOLCHAIN=... -DDLLTOOL=... -DGENERATOR=... -P package.cmake
include(${CMAKE_CURRENT_LIST_DIR}/../installed/hosts.cmake)
file(REMOVE_RECURSE ${WORK})
set(FLAGS -static)

# Nothing but what a host needs.
files_for_hosts(expected)
pages_for_hosts(pages)
list(APPEND expected ${pages} bin/obj_adapter.exe)
foreach(library IN ITEMS obj_adapter obj_adapter_c)
    list(APPEND expected
        bin/${library}.dll ${LIBDIR}/${library}.lib ${LIBDIR}/${library}.def)
endforeach()
file(GLOB_RECURSE files RELATIVE ${PREFIX} ${PREFIX}/*)
expect_same("in the package" "${files}" "${expected}")

# Packages are looked for below the target's own root alone, so it is told the place.
set(HOST_OPTIONS -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}
    -Dobj_adapter_DIR=${PREFIX}/${LIBDIR}/cmake/obj_adapter)
check_find_package(${PREFIX} ${WORK}/findPackage)
check_pkg_config(${PREFIX} ${WORK}/pkgConfig)
check_compiler_line(${PREFIX} ${WORK}/compilerLine)
check_tool(${PREFIX})

# The host of the package's README.
execute_process(
    COMMAND ${CMAKE_COMMAND} -DREADME=${PREFIX}/README.md -DSCENE=${scene}
        -DWORK=${WORK}/readmeHost -DCOMPILER=${COMPILER}
        "-DFLAGS=-static -I${PREFIX}/include -L${PREFIX}/${LIBDIR} -lobj_adapter"
        "-DEMULATOR=${EMULATOR}" -DLIBRARY=${PREFIX}/bin/obj_adapter.dll
        -P ${SOURCE}/tests/installed/readmeHost.cmake
    COMMAND_ERROR_IS_FATAL ANY)

# Import libraries of a host's own. The DLL's name stands in the .def file, ordinals
# do not.
set(anew ${WORK}/importLibrariesAnew)
file(MAKE_DIRECTORY ${anew})
foreach(library IN ITEMS obj_adapter obj_adapter_c)
    set(definition ${PREFIX}/${LIBDIR}/${library}.def)
    file(READ ${definition} text)
    if(NOT text MATCHES "^LIBRARY \"${library}\\.dll\"\nEXPORTS\n" OR text MATCHES " @[0-9]")
        message(FATAL_ERROR "${definition}:\n${text}")
    endif()
    run(${DLLTOOL} -d ${definition} -l ${anew}/${library}.lib)
endforeach()
set(place -I${PREFIX}/include -L${anew})
compile_and_run(${PREFIX} ${WORK}/anew "${place};-lobj_adapter" "${place};-lobj_adapter_c")
