// Imports files and tells what is wrong with them. Covered by tests/tools.
#include "checkVerb.h"

#include "checkText.h"
#include "exitCodes.h"
#include "importOptions.h"
#include "standardOutput.h"

#include <obj_adapter/objConverter.h>

#include <CLI/CLI.hpp>

#include <iostream>

namespace obj_adapter::tool {

namespace {

// The exit code of a file; that of the program is the worst.
int exitCodeOf(const CheckReport& report) {
    if (!report.succeeded || report.countIssues(ObjConverter::MESSAGE_ERROR) > 0)
        return EXIT_CODE_FAILURE;
    return report.countIssues(ObjConverter::MESSAGE_WARNING) > 0 ? EXIT_CODE_WARNINGS
                                                                 : EXIT_CODE_SUCCESS;
}

int worseOf(int a, int b) {
    if (a == EXIT_CODE_FAILURE || b == EXIT_CODE_FAILURE)
        return EXIT_CODE_FAILURE;
    return a == EXIT_CODE_SUCCESS ? b : a;
}

}  // namespace

void CheckVerb::addTo(CLI::App& program) {
    CLI::App& command = *program.add_subcommand(
        "check", "What the importer repaired, refused or could not find, and faults of the mesh");
    command.add_option("FILE.obj", fileNames, "The OBJ files")
        ->type_name("FILE.obj...")
        ->required();
    command.add_flag("--json", json, "Print JSON, for other programs");
    command.add_flag("--all", showAll, "Do not cut long lists and names");
    addImportOptions(command, settings);
}

int CheckVerb::run() {
    int code = EXIT_CODE_SUCCESS;
    std::vector<CheckReport> reports;
    for (const std::string& fileName : fileNames) {
        // An import appends to what is there, so each file gets a new converter.
        ObjConverter::clearInstance();
        settings.fileName = fileName;
        CheckReport report = checkFile(settings);
        code = worseOf(code, exitCodeOf(report));
        if (json) {
            reports.push_back(std::move(report));
            continue;
        }
        std::cout << (&fileName == &fileNames.front() ? "" : "\n");
        printReport(std::cout, report, showAll);
    }
    if (json)
        printJson(std::cout, reportsToJson(reports));
    return finishOutput(true) == EXIT_CODE_SUCCESS ? code : EXIT_CODE_FAILURE;
}

}  // namespace obj_adapter::tool
