# CLI11 is headers alone, so those of Debian's package libcli11-dev serve any
# target. Their folder is linked into the build folder: /usr/include as a whole
# holds another system's headers and must never reach the compiler.
include(FindPackageHandleStandardArgs)
if(EXISTS /usr/include/CLI/CLI.hpp)
    set(CLI11_HEADERS /usr/include/CLI)
endif()
find_package_handle_standard_args(CLI11
    REQUIRED_VARS CLI11_HEADERS
    FAIL_MESSAGE "the headers of CLI11 are missing (Debian's package libcli11-dev)")

if(CLI11_FOUND AND NOT TARGET CLI11::CLI11)
    set(CLI11_LINKS ${PROJECT_BINARY_DIR}/headersOfPackages)
    file(MAKE_DIRECTORY ${CLI11_LINKS})
    file(CREATE_LINK ${CLI11_HEADERS} ${CLI11_LINKS}/CLI SYMBOLIC)
    add_library(CLI11::CLI11 INTERFACE IMPORTED)
    set_target_properties(CLI11::CLI11 PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES ${CLI11_LINKS})
endif()
