# The packages for hosts, from what the install rules install, in dist/:
#
#     cmake --workflow --preset linux-gcc-package            .tar.gz and .deb
#     cmake --workflow --preset windows-x64-mingw-package    .zip
#
# With SOURCE_DATE_EPOCH in the environment, the same build gives the same archives.

set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/dist)
set(CPACK_PACKAGE_NAME ${PROJECT_NAME})
set(CPACK_PACKAGE_VENDOR "${PROJECT_NAME} developers")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/package/finishFiles.cmake)
set(CPACK_COMPONENTS_ALL library development)
if(TARGET obj_adapter_tool)
    list(APPEND CPACK_COMPONENTS_ALL program)
endif()

string(TOLOWER ${CMAKE_SYSTEM_NAME} system)
string(TOLOWER ${CMAKE_SYSTEM_PROCESSOR} processor)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-windows-x64)
    if(MINGW)
        # Hosts of another compiler need another archive.
        string(APPEND CPACK_PACKAGE_FILE_NAME -mingw)
    endif()
else()
    set(CPACK_GENERATOR TGZ)
    set(CPACK_PACKAGE_FILE_NAME ${PROJECT_NAME}-${PROJECT_VERSION}-${system}-${processor})
    find_program(DPKG_SHLIBDEPS_PROGRAM dpkg-shlibdeps)
    find_program(FILE_PROGRAM file)
    mark_as_advanced(DPKG_SHLIBDEPS_PROGRAM FILE_PROGRAM)
    if(DPKG_SHLIBDEPS_PROGRAM AND FILE_PROGRAM)
        list(APPEND CPACK_GENERATOR DEB)
        include(cmake/package/debian.cmake)
    endif()
endif()

include(CPack)
