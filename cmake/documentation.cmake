# The pages for hosts as HTML, by Doxygen and the style that Debian packages as
# doxygen-awesome-css.
#
#     cmake --build build/linux-gcc-release --target documentation
find_program(DOXYGEN_PROGRAM doxygen)
find_path(DOXYGEN_AWESOME_DIRECTORY doxygen-awesome.css
    PATHS /usr/share/doxygen-awesome-css NO_DEFAULT_PATH)
mark_as_advanced(DOXYGEN_PROGRAM DOXYGEN_AWESOME_DIRECTORY)
if(NOT DOXYGEN_PROGRAM OR NOT DOXYGEN_AWESOME_DIRECTORY)
    if(OBJ_ADAPTER_REQUIRE_PEERS AND OBJ_ADAPTER_BUILD_TESTS)
        message(FATAL_ERROR "the documentation needs doxygen and doxygen-awesome-css")
    endif()
    message(STATUS "documentation left out: needs doxygen and doxygen-awesome-css")
    return()
endif()

set(DOCUMENTATION_DIRECTORY ${PROJECT_BINARY_DIR}/documentation)
file(GLOB pages CONFIGURE_DEPENDS
    ${PROJECT_SOURCE_DIR}/*.md ${PROJECT_SOURCE_DIR}/docs/*.md
    ${PROJECT_SOURCE_DIR}/examples/*.md ${PROJECT_SOURCE_DIR}/fuzz/*.md)
list(JOIN pages "\" \"" DOCUMENTATION_PAGES)
set(DOCUMENTATION_PAGES "\"${DOCUMENTATION_PAGES}\"")
configure_file(docs/doxygen/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
add_custom_target(documentation
    COMMAND ${CMAKE_COMMAND} -E make_directory ${DOCUMENTATION_DIRECTORY}
    COMMAND ${DOXYGEN_PROGRAM} ${PROJECT_BINARY_DIR}/Doxyfile
    COMMENT "Pages for hosts, in ${DOCUMENTATION_DIRECTORY}/html" VERBATIM)
