// Imports a file and shows the tree of its group names. Covered by tests/tools.
#include "treeVerb.h"

#include "exitCodes.h"
#include "importOptions.h"
#include "standardOutput.h"
#include "treeText.h"

#include <obj_adapter/obj_adapter.h>

#include <CLI/CLI.hpp>

#include <iostream>

namespace obj_adapter::tool {

void TreeVerb::addTo(CLI::App& program) {
    CLI::App& command =
        *program.add_subcommand("tree", "The tree of group names, with the faces of each");
    addInputFile(command, settings);
    command.add_flag("--json", json, "Print JSON, for other programs");
    command.add_flag("--all", showAll, "Do not cut long trees and names");
    addImportOptions(command, settings);
}

int TreeVerb::run() {
    const ImportRun importRun = runImport(settings);
    ObjConverter* converter = ObjConverter::getInstance();
    if (converter == nullptr)
        return EXIT_CODE_FAILURE;
    if (json)
        printJson(std::cout, treeToJson(listGroupTree(*converter), importRun, settings.fileName));
    else if (importRun.succeeded || converter->getNumberOfFaces() > 0)
        printTree(std::cout, listGroupTree(*converter), showAll);
    return finishOutput(importRun.succeeded);
}

}  // namespace obj_adapter::tool
