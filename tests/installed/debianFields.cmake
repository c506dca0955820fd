# What the Debian packages say of themselves, and that the system could install them:
# their files do not overlap, and what they depend on is there.
#
#     cmake -DPACKAGES=folder of the .deb files -DVERSION=... -P debianFields.cmake
string(REGEX MATCH "^[0-9]+" interface ${VERSION})
set(library libobj-adapter${interface})

# expect_field(package field pattern)
function(expect_field package field pattern)
    file(GLOB deb ${PACKAGES}/${package}_${VERSION}-1_*.deb)
    execute_process(COMMAND dpkg-deb -f ${deb} ${field}
        OUTPUT_VARIABLE value OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    if(NOT value MATCHES "${pattern}")
        message(FATAL_ERROR "${package}: ${field} is \"${value}\", not ${pattern}")
    endif()
endfunction()

set(least "\\(>= [0-9.]+\\)")
set(standardLibraries "libc6 ${least}, libgcc-s1 ${least}, libstdc\\+\\+6 ${least}")
expect_field(${library} Section "^libs$")
expect_field(${library} Depends "^${standardLibraries}$")
expect_field(${library} Description "^Wavefront OBJ importer for host applications - libraries\n ")
expect_field(libobj-adapter-dev Section "^libdevel$")
expect_field(libobj-adapter-dev Depends "^${library} \\(= ${VERSION}-1\\)$")
expect_field(obj-adapter Section "^graphics$")
expect_field(obj-adapter Depends "^${library} \\(= ${VERSION}-1\\), ${standardLibraries}$")
foreach(package IN ITEMS ${library} libobj-adapter-dev obj-adapter)
    expect_field(${package} Source "^obj-adapter$")
    expect_field(${package} Maintainer "^obj_adapter developers <[^ ]+\\.invalid>$")

    file(GLOB deb ${PACKAGES}/${package}_${VERSION}-1_*.deb)
    execute_process(COMMAND dpkg-deb --fsys-tarfile ${deb} COMMAND tar -t
        OUTPUT_VARIABLE files COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[^\n]*[^/\n]\n" files "${files}")
    foreach(file IN LISTS files)
        list(FIND allFiles "${file}" at)
        if(NOT at EQUAL -1)
            message(FATAL_ERROR "${file} is in two packages")
        endif()
    endforeach()
    list(APPEND allFiles ${files})
endforeach()

# The packages of hosts find out what to depend on, and the loader learns of the files.
file(GLOB deb ${PACKAGES}/${library}_*.deb)
set(linesOfHosts
    "^libobj_adapter ${interface} ${library} .*\nlibobj_adapter_c ${interface} ${library} ")
foreach(pair IN ITEMS
        "shlibs;${linesOfHosts}"
        "triggers;^activate-noawait ldconfig\n")
    list(GET pair 0 name)
    list(GET pair 1 pattern)
    execute_process(COMMAND dpkg-deb -I ${deb} ${name}
        OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    if(NOT text MATCHES "${pattern}")
        message(FATAL_ERROR "${name}: ${text}")
    endif()
endforeach()
