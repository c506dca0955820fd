// Imports a file and shows the tree of its group names. Covered by tests/tools.
#include "treeVerb.h"

#include "exitCodes.h"
#include "importOptions.h"
#include "jsonOutput.h"
#include "standardOutput.h"
#include "treeText.h"

#include <obj_adapter/obj_adapter.h>

#include <CLI/CLI.hpp>

#include <iostream>

namespace obj_adapter::tool {

namespace {

// A list, not objects in objects: readers of JSON limit the depth.
Json treeToJson(const std::vector<TreeNode>& nodes, const ImportRun& importRun,
                const std::string& fileName) {
    Json json = makeJson("tree");
    json["file"] = fileName;
    json["succeeded"] = importRun.succeeded;
    json["nodes"] = Json::array();
    for (const TreeNode& node : nodes) {
        Json entry;
        entry["name"] = node.name;
        entry["parent"] = node.parent == NO_PARENT ? Json(nullptr) : Json(node.parent);
        entry["depth"] = node.depth;
        entry["group"] = node.fullName ? Json(*node.fullName) : Json(nullptr);
        entry["faces"] = node.faces.size();
        json["nodes"].push_back(std::move(entry));
    }
    return json;
}

}  // namespace

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
