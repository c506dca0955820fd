# Installs the library and builds hosts against it as a stranger would, by
# find_package, by pkg-config and by a compiler's line, where it was installed and
# after a move.
#
#     cmake -DBUILD=... -DSOURCE=... -DWORK=... -DLIBDIR=... -DVERSION=...
#           -DCONFIGURATION=... -DCOMPILER=... -DC_COMPILER=... -DFLAGS=...
#           -DGENERATOR=... -DTOOL=... -P installedPackage.cmake
#
# TOOL  whether the build has the command-line program
include(${CMAKE_CURRENT_LIST_DIR}/hosts.cmake)

# Nothing but what a host needs.
function(check_files prefix)
    file(GLOB_RECURSE files RELATIVE ${prefix} ${prefix}/*)
    files_of_elf_system(expected)
    if(NOT TOOL)
        list(FILTER expected EXCLUDE REGEX "^(bin|share/man|share/bash-completion)/")
    endif()
    expect_same("installed" "${files}" "${expected}")
endfunction()

function(check_everything prefix work)
    check_files(${prefix})
    check_find_package(${prefix} ${work}/findPackage)
    check_pkg_config(${prefix} ${work}/pkgConfig)
    check_compiler_line(${prefix} ${work}/compilerLine)
    if(TOOL)
        check_tool(${prefix})
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
set(first "${WORK}/first place")
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${first})
check_everything(${first} ${WORK}/first)

set(second "${WORK}/second place/deeper")
file(MAKE_DIRECTORY "${WORK}/second place")
file(RENAME ${first} ${second})
check_everything(${second} ${WORK}/second)
