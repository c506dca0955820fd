# JSON for Modern C++ is headers alone, so those of Debian's package
# nlohmann-json3-dev serve any target. Their folder is linked into the build
# folder: /usr/include as a whole holds another system's headers and must never
# reach the compiler.
include(FindPackageHandleStandardArgs)
if(EXISTS /usr/include/nlohmann/json.hpp)
    set(nlohmann_json_HEADERS /usr/include/nlohmann)
endif()
find_package_handle_standard_args(nlohmann_json
    REQUIRED_VARS nlohmann_json_HEADERS
    FAIL_MESSAGE "the headers of nlohmann-json are missing (Debian's package nlohmann-json3-dev)")

if(nlohmann_json_FOUND AND NOT TARGET nlohmann_json::nlohmann_json)
    set(nlohmann_json_LINKS ${PROJECT_BINARY_DIR}/headersOfPackages)
    file(MAKE_DIRECTORY ${nlohmann_json_LINKS})
    file(CREATE_LINK ${nlohmann_json_HEADERS} ${nlohmann_json_LINKS}/nlohmann SYMBOLIC)
    add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
    set_target_properties(nlohmann_json::nlohmann_json PROPERTIES
        INTERFACE_INCLUDE_DIRECTORIES ${nlohmann_json_LINKS})
endif()
