// Runs suites and prints their report.
#include "runner/suites.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>
#include <vector>

namespace obj_adapter::bench {

namespace {

struct Suite {
    const char* name;
    void (*run)(const Session& session, Report& report);
};

constexpr Suite SUITES[] = {
    {"reading", &runReadingSuite},
    {"costs", &runCostSuite},
    {"compaction", &runCompactionSuite},
    {"subdivision", &runSubdivisionSuite},
    {"triangulation", &runTriangulationSuite},
    {"memory", &runMemorySuite},
    {"start", &runStartSuite},
};

std::vector<std::string> suiteNames() {
    std::vector<std::string> names;
    for (const Suite& suite : SUITES)
        names.emplace_back(suite.name);
    return names;
}

int run(int argc, char** argv) {
    CLI::App app("Measures the library, beside others and floors, by CPU time.");
    Session session;
    std::vector<std::string> suites = suiteNames();
    std::string markdownFile;
    std::string mark = "measured";
    bool isStoring = false;
    app.add_option("--suites", suites, "what to measure")
        ->check(CLI::IsMember(suiteNames()))
        ->delimiter(',');
    app.add_option("--shapes", session.shapes, "which files to read")->delimiter(',');
    app.add_option("--size", session.megabytes, "MB of each file to read (20, 200, 800)");
    app.add_option("--rounds", session.rounds, "how often everything is run")
        ->check(CLI::Range(1, 1000));
    app.add_flag("--quick", session.isQuick, "small inputs and three rounds: does it work?");
    app.add_option("--without", session.absent, "other readers to leave out of large files")
        ->delimiter(',');
    app.add_option("--markdown", markdownFile, "a file to write the tables into");
    app.add_option("--mark", mark, "where in that file: between the marks of this name");
    app.add_flag("--store-answers", isStoring, "write the hashes of models anew, and stop");
    app.add_option("--answers", session.answerFile, "file of the models' hashes")->required();
    app.add_option("--inputs", session.inputs.path, "folder for generated files")->required();
    CLI11_PARSE(app, argc, argv);

    if (session.isQuick) {
        constexpr double QUICK_MEGABYTES = 2;
        constexpr int QUICK_ROUNDS = 3;
        session.megabytes = std::min(session.megabytes, QUICK_MEGABYTES);
        session.rounds = std::min(session.rounds, QUICK_ROUNDS);
    }
    const std::string program = argv[0];
    session.programFolder = program.substr(0, program.rfind('/'));
    if (const char* models = std::getenv("OBJ_ADAPTER_MODELS"))
        session.inputs.modelFolder = models;

    if (isStoring) {
        storeAnswers(session);
        return 0;
    }
    // What is missing is told before all measuring, not behind it.
    if (!markdownFile.empty())
        readMarkedText(markdownFile, mark);
    checkAnswers(session);
    Report report;
    for (const Suite& suite : SUITES) {
        if (std::find(suites.begin(), suites.end(), suite.name) != suites.end())
            suite.run(session, report);
    }
    std::fputs(report.asText().c_str(), stdout);
    if (!markdownFile.empty())
        replaceMeasured(markdownFile, mark, report.asMarkdown());
    return 0;
}

}  // namespace

}  // namespace obj_adapter::bench

int main(int argc, char** argv) {
    try {
        return obj_adapter::bench::run(argc, argv);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "run_benchmarks: %s\n", failure.what());
        return 1;
    }
}
