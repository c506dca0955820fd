// Imports a file and tells what is in it. Covered by tests/tools.
#include "infoVerb.h"

#include "importOptions.h"
#include "modelSummary.h"
#include "standardOutput.h"
#include "summaryJson.h"

#include <CLI/CLI.hpp>

#include <iostream>

namespace obj_adapter::tool {

void InfoVerb::addTo(CLI::App& program) {
    CLI::App& command = *program.add_subcommand(
        "info", "Counts, bounding box, groups, materials, maps and times of a file");
    addInputFile(command, settings);
    command.add_flag("--json", json, "Print JSON, for other programs");
    command.add_flag("--all", showAll, "Do not cut long lists and names");
    addImportOptions(command, settings);
}

int InfoVerb::run() {
    const ImportRun importRun = runImport(settings);
    ObjConverter* converter = ObjConverter::getInstance();
    if (converter != nullptr) {
        const ModelAccess model(*converter);
        if (json)
            printJson(std::cout, summaryToJson(model, importRun, settings.fileName));
        else if (importRun.succeeded || hasRecords(model))
            printSummary(std::cout, model, importRun, showAll);
    }
    return finishOutput(importRun.succeeded);
}

}  // namespace obj_adapter::tool
