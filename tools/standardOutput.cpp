// The end of a verb that prints. Covered by tests/tools.
#include "standardOutput.h"

#include "exitCodes.h"
#include "importRun.h"

#include <iostream>

namespace obj_adapter::tool {

int finishOutput(bool succeeded) {
    if (!std::cout.flush()) {
        printError("cannot write to the standard output");
        return EXIT_CODE_FAILURE;
    }
    return succeeded ? EXIT_CODE_SUCCESS : EXIT_CODE_FAILURE;
}

}  // namespace obj_adapter::tool
