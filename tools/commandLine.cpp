// The command line of the program. Covered by tests/tools.
#include "commandLine.h"

#include "checkVerb.h"
#include "convertVerb.h"
#include "exitCodes.h"
#include "infoVerb.h"
#include "previewVerb.h"
#include "programVersion.h"
#include "treeVerb.h"
#include "verb.h"

#include <obj_adapter/obj_adapter.h>

#include <CLI/CLI.hpp>

namespace obj_adapter::tool {

namespace {

constexpr const char* DESCRIPTION =
    "Looks at Wavefront OBJ files: what is in them, what is wrong with them, what they look "
    "like; and writes them in other formats.";

constexpr const char* FOOTER =
    "Examples:\n"
    "  obj_adapter info house.obj\n"
    "  obj_adapter tree house.obj\n"
    "  obj_adapter check *.obj --json\n"
    "  obj_adapter convert house.obj house.glb\n"
    "  obj_adapter preview house.obj -o house.png\n"
    "\n"
    "obj_adapter VERB --help tells the options of a verb.\n"
    "Data goes to the standard output, messages to the error output.\n"
    "Exit codes: 0 success, 1 failure, 2 wrong command line, 3 check found warnings only.";

}  // namespace

CommandLine::CommandLine() : app(std::make_unique<CLI::App>(DESCRIPTION, "obj_adapter")) {
    // "/data/a.obj" is a path on every system.
    app->allow_windows_style_options(false);
    app->set_version_flag("--version", getProgramVersion(), "Print the version and exit");
    app->require_subcommand(1);
    app->footer(FOOTER);
    verbs.push_back(std::make_unique<InfoVerb>());
    verbs.push_back(std::make_unique<TreeVerb>());
    verbs.push_back(std::make_unique<CheckVerb>());
    verbs.push_back(std::make_unique<ConvertVerb>());
    verbs.push_back(std::make_unique<PreviewVerb>());
    for (const auto& verb : verbs)
        verb->addTo(*app);
}

CommandLine::~CommandLine() {
    ObjConverter::clearInstance();
}

int CommandLine::run(int argc, const char* const* argv) {
    try {
        app->parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        // Help and version end the parse as well, with the code of success.
        return app->exit(end) == 0 ? EXIT_CODE_SUCCESS : EXIT_CODE_USAGE;
    }
    // The subcommands stand in the order of the verbs, and one was given.
    std::size_t verb = 0;
    for (const CLI::App* command : app->get_subcommands({})) {
        if (command->parsed())
            return verbs[verb]->run();
        ++verb;
    }
    return EXIT_CODE_USAGE;
}

}  // namespace obj_adapter::tool
