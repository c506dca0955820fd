# Three Debian packages, as is the custom there: whoever only runs a host gets the
# libraries alone, which are named after their interface, so that those of two
# interfaces can be installed at once.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SOURCE obj-adapter)
# Nobody's address: ".invalid" is kept free of real ones.
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${PROJECT_NAME} developers <developers@obj-adapter.invalid>")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# Each description has a first line of its own.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(exactVersion "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")

set(libraryPackage libobj-adapter${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${libraryPackage})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
# What the packages of hosts depend on.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
# The interface of C stands on that of C++ in the same package.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/package/triggers)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "${PROJECT_DESCRIPTION} - libraries
Reads Wavefront OBJ files, with the MTL libraries that they name, into tables
of vertices, texture points, normals, triangles, groups and materials.
.
This package has the shared libraries of the C++ and the C interface.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libobj-adapter-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${libraryPackage} ${exactVersion}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "${PROJECT_DESCRIPTION} - for host programs
Reads Wavefront OBJ files, with the MTL libraries that they name, into tables
of vertices, texture points, normals, triangles, groups and materials.
.
This package has the headers, the CMake package, the files for pkg-config, the
pages for hosts and examples.")

set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME obj-adapter)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${libraryPackage} ${exactVersion}")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "look into, check, convert and draw Wavefront OBJ files
A command-line program that tells what is in an OBJ file and what is wrong with
it, converts it to GLB, PLY, STL or OBJ, and draws a picture of it.")
