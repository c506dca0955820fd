// What the program returns to its caller.
#pragma once

namespace obj_adapter::tool {

constexpr int EXIT_CODE_SUCCESS = 0;
constexpr int EXIT_CODE_FAILURE = 1;        // the import, or writing what was asked for
constexpr int EXIT_CODE_USAGE = 2;          // the command line
constexpr int EXIT_CODE_WARNINGS = 3;       // check: nothing worse than warnings
constexpr int EXIT_CODE_INTERRUPTED = 130;  // Ctrl-C; what shells report of it

}  // namespace obj_adapter::tool
