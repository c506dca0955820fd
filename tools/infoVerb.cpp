// Imports a file and tells what is in it. Covered by tests/tools.
#include "infoVerb.h"

#include "exitCodes.h"
#include "modelSummary.h"

#include <obj_adapter/obj_adapter.h>

#include <CLI/CLI.hpp>

#include <charconv>
#include <iostream>
#include <limits>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace obj_adapter::tool {

namespace {

// A whole decimal number from 0 up; nothing for any other text.
std::optional<int> parseCount(const std::string& text) {
    int count = 0;
    const char* end = text.data() + text.size();
    const auto [stop, failure] = std::from_chars(text.data(), end, count);
    if (failure != std::errc() || stop != end || count < 0)
        return std::nullopt;
    return count;
}

// Empty if the text is a count; otherwise what is wrong, for the command line.
std::string checkCount(const std::string& text) {
    if (parseCount(text))
        return {};
    return text + " is not a whole number from 0 to " +
           std::to_string(std::numeric_limits<int>::max());
}

}  // namespace

void InfoVerb::addOptions(CLI::App& command) {
    command.add_option("file", settings.fileName, "The OBJ file to import")
        ->type_name("FILE.obj")
        ->required();

    // What may stand there is told by the description, so the checks add nothing
    // of their own to it.
    const CLI::Validator isLimit =
        CLI::IsMember({"ITERATIONS", "FACE_COUNT", "VERTEX_COUNT"}).description("");
    const CLI::Validator isCount(checkCount, "");
    command
        .add_option_function<std::vector<std::string>>(
            "--subdivide",
            [this](const std::vector<std::string>& limit) {
                settings.subdivisionLimit = limit[0];
                settings.subdivisionRounds = parseCount(limit[1]).value();
            },
            "Subdivide: LIMIT is ITERATIONS for N rounds, or FACE_COUNT or\n"
            "VERTEX_COUNT for as many rounds as stay below about N of them")
        ->type_name("LIMIT N")
        ->type_size(2)
        ->expected(1)
        ->check(isLimit.application_index(0))
        ->check(isCount.application_index(1));

    CLI::Option* hierarchy = command.add_flag(
        "--hierarchy", settings.hierarchy, "Nest the tree of groups by the parts of their names");
    command
        .add_flag("--reverse", settings.reverseNames,
                  "Group names have the innermost part first (with --hierarchy)")
        ->needs(hierarchy);
    command.add_flag("--full-names", settings.fullNames,
                     "Show full names in a nested tree, not the last part alone");
    command.add_flag_callback(
        "--no-compaction", [this] { settings.compaction = false; },
        "Leave equal vertices and duplicate faces as they are");
    command.add_flag("--all", showAll, "Do not cut long lists and names");
}

int InfoVerb::run() const {
    const ImportRun importRun = runImport(settings);
    ObjConverter* converter = ObjConverter::getInstance();
    if (converter != nullptr && (importRun.succeeded || hasRecords(*converter)))
        printSummary(std::cout, *converter, importRun, {showAll, settings.hierarchy});
    ObjConverter::clearInstance();

    if (!std::cout.flush()) {
        std::cerr << "error: cannot write the summary\n";
        return EXIT_CODE_FAILURE;
    }
    return importRun.succeeded ? EXIT_CODE_SUCCESS : EXIT_CODE_FAILURE;
}

}  // namespace obj_adapter::tool
