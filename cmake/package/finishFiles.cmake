# Run by cpack between installing and packing: what Debian wants otherwise than it is
# installed, and times that do not tell when it was packed.

function(compress)
    find_program(GZIP_PROGRAM gzip REQUIRED)
    execute_process(COMMAND ${GZIP_PROGRAM} -9 -n ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Each package has a folder of its own for what is to be read, with a changelog in
# Debian's form; man pages are compressed.
function(finish_debian_package root package)
    set(pages ${root}/usr/share/doc/${package})
    if(EXISTS ${root}/usr/share/doc/${CPACK_PACKAGE_NAME})
        file(RENAME ${root}/usr/share/doc/${CPACK_PACKAGE_NAME} ${pages})
    endif()
    string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
    set(version ${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
    file(WRITE ${pages}/changelog.Debian
"${CPACK_DEBIAN_PACKAGE_SOURCE} (${version}) unstable; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}. CHANGELOG.md in ${CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME}
    tells what is new.

 -- ${CPACK_DEBIAN_PACKAGE_MAINTAINER}  ${now}
")
    file(GLOB manPages ${root}/usr/share/man/man1/*)
    compress(${pages}/changelog.Debian ${manPages})
endfunction()

if(CPACK_GENERATOR STREQUAL "DEB")
    foreach(component IN LISTS CPACK_COMPONENTS_ALL)
        string(TOUPPER ${component} name)
        finish_debian_package(${CPACK_TEMPORARY_DIRECTORY}/${component}
            ${CPACK_DEBIAN_${name}_PACKAGE_NAME})
    endforeach()
endif()

if(DEFINED ENV{SOURCE_DATE_EPOCH})
    find_program(TOUCH_PROGRAM touch REQUIRED)
    file(GLOB_RECURSE files LIST_DIRECTORIES true ${CPACK_TEMPORARY_DIRECTORY}/*)
    execute_process(
        COMMAND ${TOUCH_PROGRAM} -h -d @$ENV{SOURCE_DATE_EPOCH}
            ${CPACK_TEMPORARY_DIRECTORY} ${files}
        COMMAND_ERROR_IS_FATAL ANY)
endif()
