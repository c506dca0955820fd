# Hosts built with an unpacked .tar.gz or with unpacked .deb files: by find_package,
# by pkg-config and by a compiler's line; the program and its man page.
#
#     cmake -DSOURCE=... -DPREFIX=... -DDEBIAN=whether it is of .deb files -DWORK=...
#           -DLIBDIR=... -DVERSION=... -DCONFIGURATION=... -DCOMPILER=...
#           -DC_COMPILER=... -DGENERATOR=... -P unpackedPackage.cmake
include(${CMAKE_CURRENT_LIST_DIR}/hosts.cmake)
file(REMOVE_RECURSE ${WORK})

files_of_elf_system(expected)
set(manPage ${PREFIX}/share/man/man1/obj_adapter.1)
if(DEBIAN)
    list(TRANSFORM expected REPLACE "^share/doc/obj_adapter/" "share/doc/libobj-adapter-dev/")
    list(TRANSFORM expected REPLACE "^(share/man/.*)$" "\\1.gz")
    string(REGEX MATCH "^[0-9]+" interface ${VERSION})
    foreach(package IN ITEMS libobj-adapter${interface} libobj-adapter-dev obj-adapter)
        list(APPEND expected share/doc/${package}/changelog.Debian.gz)
    endforeach()
    string(APPEND manPage .gz)
endif()
file(GLOB_RECURSE files RELATIVE ${PREFIX} ${PREFIX}/*)
expect_same("in the package" "${files}" "${expected}")

check_find_package(${PREFIX} ${WORK}/findPackage)
check_pkg_config(${PREFIX} ${WORK}/pkgConfig)
check_compiler_line(${PREFIX} ${WORK}/compilerLine)
check_tool(${PREFIX})
check_man_page(${manPage})
