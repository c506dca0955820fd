# The packages for hosts: made of the build as it stands, unpacked, and used as
# strangers do; the library within another project; and the bytes of two builds.
#
#     ctest --preset linux-gcc-release -L package
set(packageWork ${outsideWork}/package)

# add_package_test(name script NAME=value...): in need of the packages.
function(add_package_test name script)
    add_script_test(package/${name} ${script} ${ARGN})
    set_property(TEST package/${name} PROPERTY LABELS package)
    set_property(TEST package/${name} APPEND PROPERTY FIXTURES_REQUIRED packages)
endfunction()

if(WIN32)
    set(archiveName obj_adapter-${PROJECT_VERSION}-windows-x64-mingw)
    set(debianPackages 0)
else()
    string(TOLOWER ${CMAKE_SYSTEM_NAME} systemName)
    set(archiveName obj_adapter-${PROJECT_VERSION}-${systemName}-${CMAKE_SYSTEM_PROCESSOR})
    set(debianPackages 0)
    if(DPKG_SHLIBDEPS_PROGRAM AND FILE_PROGRAM)
        set(debianPackages 3)
    elseif(OBJ_ADAPTER_REQUIRE_PEERS)
        message(FATAL_ERROR "the tests of the Debian packages need dpkg-dev and file")
    endif()
endif()

add_script_test(package/make installed/makePackages.cmake
    BUILD=${PROJECT_BINARY_DIR}
    WORK=${packageWork}/packages
    ARCHIVE=${archiveName}
    DEBS=${debianPackages})
set_tests_properties(package/make PROPERTIES LABELS package FIXTURES_SETUP packages)

set(unpackedArchive ${packageWork}/packages/archive/${archiveName})
if(WIN32)
    add_package_test(zip windows/package.cmake
        PREFIX=${unpackedArchive}
        WORK=${packageWork}/zip
        EMULATOR=${emulatorWithoutProgram}
        TOOLCHAIN=${CMAKE_TOOLCHAIN_FILE}
        DLLTOOL=${CMAKE_DLLTOOL}
        ${hostBuilding})
elseif(TARGET obj_adapter_tool)
    add_package_test(tarGz installed/unpackedPackage.cmake
        PREFIX=${unpackedArchive}
        DEBIAN=OFF
        WORK=${packageWork}/tarGz
        ${hostBuilding})
    if(debianPackages)
        add_package_test(deb installed/unpackedPackage.cmake
            PREFIX=${packageWork}/packages/debian/usr
            DEBIAN=ON
            WORK=${packageWork}/deb
            ${hostBuilding})
        add_package_test(debianFields installed/debianFields.cmake
            PACKAGES=${packageWork}/packages/made
            VERSION=${PROJECT_VERSION})
    endif()
endif()

add_script_test(package/fetchContent installed/fetchedByHost.cmake
    SCENE=${sampleScene}
    WORK=${packageWork}/fetchContent
    TOOLCHAIN=${CMAKE_TOOLCHAIN_FILE}
    EMULATOR=${emulatorWithoutProgram}
    ${hostBuilding})

add_script_test(package/reproducible installed/reproducible.cmake
    SOURCE=${PROJECT_SOURCE_DIR}
    WORK=${packageWork}/reproducible
    TOOLCHAIN=${CMAKE_TOOLCHAIN_FILE}
    COMPILER=${CMAKE_CXX_COMPILER}
    GENERATOR=${CMAKE_GENERATOR})
# Whole builds, on a machine that may be busy.
set_tests_properties(package/fetchContent package/reproducible PROPERTIES
    LABELS package TIMEOUT 1800)
