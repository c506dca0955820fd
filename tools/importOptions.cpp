// The options of an import on the command line. Covered by tests/tools.
#include "importOptions.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace obj_adapter::tool {

namespace {

constexpr const char* GROUP = "Import";

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

void addSubdivision(CLI::App& command, ImportSettings& settings) {
    // What may stand there is told by the description, so the checks add nothing
    // of their own to it.
    const CLI::Validator isLimit =
        CLI::IsMember({"ITERATIONS", "FACE_COUNT", "VERTEX_COUNT"}).description("");
    const CLI::Validator isCount(checkCount, "");
    command
        .add_option_function<std::vector<std::string>>(
            "--subdivide",
            [&settings](const std::vector<std::string>& limit) {
                settings.subdivisionLimit = limit[0];
                settings.subdivisionRounds = parseCount(limit[1]).value();
            },
            "Subdivide: LIMIT is ITERATIONS for N rounds, or FACE_COUNT or "
            "VERTEX_COUNT for as many rounds as stay below about N of them")
        ->type_name("LIMIT N")
        ->type_size(2)
        ->expected(1)
        ->check(isLimit.application_index(0))
        ->check(isCount.application_index(1))
        ->group(GROUP);
}

void addTree(CLI::App& command, ImportSettings& settings) {
    CLI::Option* flat = command
                            .add_flag_callback(
                                "--flat", [&settings] { settings.hierarchy = false; },
                                "Hang all groups under one root, whatever the parts of their names")
                            ->group(GROUP);
    command
        .add_flag_callback(
            "--hierarchy", [&settings] { settings.hierarchy = true; },
            "Nest groups by the parts of their names (the default)")
        ->excludes(flat)
        ->group(GROUP);
    command
        .add_flag("--reverse", settings.reverseNames, "Group names have the innermost part first")
        ->excludes(flat)
        ->group(GROUP);
    command
        .add_flag("--full-names", settings.fullNames,
                  "Call the nodes of a nested tree by their full names")
        ->group(GROUP);
}

}  // namespace

void addImportOptions(CLI::App& command, ImportSettings& settings) {
    addSubdivision(command, settings);
    command
        .add_flag_callback(
            "--no-compaction", [&settings] { settings.compaction = false; },
            "Leave equal vertices and duplicate faces as they are")
        ->group(GROUP);
    addTree(command, settings);
    command.add_flag_callback("-q,--quiet", silenceInformation, "Print only warnings and errors")
        ->group(GROUP);
}

void addInputFile(CLI::App& command, ImportSettings& settings) {
    command.add_option("FILE.obj", settings.fileName, "The OBJ file")
        ->type_name("FILE.obj")
        ->required();
}

}  // namespace obj_adapter::tool
