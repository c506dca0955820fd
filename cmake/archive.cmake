# The archive for hosts on Windows: DLL, import library, headers and the CMake
# package, as they are installed, in one zip file in dist/.
#
#     cmake --workflow --preset windows-x64-mingw-archive
install(FILES README.md docs/hostGuide.md examples/firstImport.cpp DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/dist)
set(CPACK_PACKAGE_FILE_NAME obj_adapter-${PROJECT_VERSION}-windows-x64)
if(MINGW)
    # Hosts of another compiler need another archive.
    string(APPEND CPACK_PACKAGE_FILE_NAME -mingw)
endif()
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_STRIP_FILES ON)
include(CPack)
