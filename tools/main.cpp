// The command line of the program. Covered by tests/tools.
#include "exitCodes.h"
#include "infoVerb.h"

#include <obj_adapter/version.h>

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <string>

namespace {

using namespace obj_adapter::tool;

std::string getVersionText() {
    return "obj_adapter " + std::to_string(OBJ_ADAPTER_VERSION_MAJOR) + "." +
           std::to_string(OBJ_ADAPTER_VERSION_MINOR) + "." +
           std::to_string(OBJ_ADAPTER_VERSION_PATCH);
}

int runCommandLine(int argc, char** argv) {
    CLI::App app("Imports a Wavefront OBJ file and tells what is in it.", "obj_adapter");
    // "/data/a.obj" is a path on every system.
    app.allow_windows_style_options(false);
    app.set_version_flag("--version", getVersionText(), "Print the version and exit");
    InfoVerb verb;
    verb.addOptions(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        // Help and version end the parse as well, with the code of success.
        return app.exit(end) == 0 ? EXIT_CODE_SUCCESS : EXIT_CODE_USAGE;
    }
    return verb.run();
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return runCommandLine(argc, argv);
    } catch (const std::exception& failure) {
        std::cerr << "error: " << failure.what() << "\n";
        return EXIT_CODE_FAILURE;
    }
}
