// What the program returns to its caller.
#pragma once

namespace obj_adapter::tool {

constexpr int EXIT_CODE_SUCCESS = 0;
constexpr int EXIT_CODE_FAILURE = 1;  // the import, or writing its summary
constexpr int EXIT_CODE_USAGE = 2;    // the command line

}  // namespace obj_adapter::tool
