# The installed package: find_package(obj_adapter) with the target
# obj_adapter::obj_adapter, and a pkg-config file.
include(CMakePackageConfigHelpers)

set(packageDirectory ${CMAKE_INSTALL_LIBDIR}/cmake/obj_adapter)

install(TARGETS obj_adapter obj_adapter_c EXPORT obj_adapterTargets)
install(DIRECTORY include/obj_adapter
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
install(EXPORT obj_adapterTargets
    NAMESPACE obj_adapter::
    DESTINATION ${packageDirectory})

configure_package_config_file(cmake/obj_adapterConfig.cmake.in
    ${PROJECT_BINARY_DIR}/obj_adapterConfig.cmake
    INSTALL_DESTINATION ${packageDirectory})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/obj_adapterConfigVersion.cmake
    COMPATIBILITY SameMinorVersion)
install(FILES
    ${PROJECT_BINARY_DIR}/obj_adapterConfig.cmake
    ${PROJECT_BINARY_DIR}/obj_adapterConfigVersion.cmake
    DESTINATION ${packageDirectory})

# The prefix stands relative to the file, so that the installation can be moved.
file(RELATIVE_PATH pkgConfigToPrefix
    ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/obj_adapter.pc.in ${PROJECT_BINARY_DIR}/obj_adapter.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/obj_adapter.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
