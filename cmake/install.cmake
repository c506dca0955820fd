# What is installed: libraries, headers, find_package(obj_adapter) with the targets
# obj_adapter::obj_adapter and obj_adapter::obj_adapter_c, pkg-config files, the pages
# for hosts and examples. The command-line program adds itself (tools/). All can be
# moved together.
include(CMakePackageConfigHelpers)

set(packageDirectory ${CMAKE_INSTALL_LIBDIR}/cmake/obj_adapter)

install(TARGETS obj_adapter obj_adapter_c EXPORT obj_adapterTargets
    RUNTIME COMPONENT library
    LIBRARY COMPONENT library NAMELINK_COMPONENT development
    ARCHIVE COMPONENT development)
if(MINGW)
    install(FILES ${PROJECT_BINARY_DIR}/obj_adapter.def ${PROJECT_BINARY_DIR}/obj_adapter_c.def
        DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
endif()
install(DIRECTORY include/obj_adapter
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
    FILES_MATCHING PATTERN "*.h")
install(EXPORT obj_adapterTargets
    NAMESPACE obj_adapter::
    DESTINATION ${packageDirectory} COMPONENT development)

configure_package_config_file(cmake/obj_adapterConfig.cmake.in
    ${PROJECT_BINARY_DIR}/obj_adapterConfig.cmake
    INSTALL_DESTINATION ${packageDirectory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/obj_adapterConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/obj_adapterConfig.cmake
    ${PROJECT_BINARY_DIR}/obj_adapterConfigVersion.cmake
    DESTINATION ${packageDirectory} COMPONENT development)

# The prefix stands relative to the file, so that the installation can be moved.
file(RELATIVE_PATH pkgConfigToPrefix
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
# install_pkg_config(library description)
function(install_pkg_config library description)
    configure_file(cmake/obj_adapter.pc.in ${PROJECT_BINARY_DIR}/${library}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${library}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()
install_pkg_config(obj_adapter "${PROJECT_DESCRIPTION}")
install_pkg_config(obj_adapter_c "${PROJECT_DESCRIPTION}, C interface")

# The pages stand to each other as in the sources, so that their links hold. On
# Windows a package has a folder of its own, and they are at its top.
if(WIN32)
    set(pagesDirectory .)
else()
    set(pagesDirectory ${CMAKE_INSTALL_DOCDIR})
endif()
install(FILES README.md CHANGELOG.md SECURITY.md
    DESTINATION ${pagesDirectory} COMPONENT development)
install(FILES docs/hostGuide.md docs/performance.md docs/repairs.md docs/toolFormats.md
        docs/toolOutput.schema.json
    DESTINATION ${pagesDirectory}/docs COMPONENT development)
install(DIRECTORY docs/pictures DESTINATION ${pagesDirectory}/docs COMPONENT development)
install(DIRECTORY examples DESTINATION ${pagesDirectory} COMPONENT development)
