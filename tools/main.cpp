// The program. Covered by tests/tools.
#include "commandLine.h"
#include "exitCodes.h"
#include "importRun.h"
#include "interrupt.h"

#include <exception>
#include <new>

int main(int argc, char** argv) {
    using namespace obj_adapter::tool;
    try {
        return CommandLine().run(argc, argv);
    } catch (const Interrupted&) {
        return endInterrupted();
    } catch (const std::bad_alloc&) {
        printError("not enough memory");
        return EXIT_CODE_FAILURE;
    } catch (const std::exception& failure) {
        printError(failure.what());
        return EXIT_CODE_FAILURE;
    }
}
