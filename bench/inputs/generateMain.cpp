// Writes the generated inputs, each once: files that are there already, of the
// same request, stay.
//
//     generate_inputs [--size MB] [--seed N] [--models FOLDER] --out FOLDER SHAPE...
#include "inputs/inputFiles.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    CLI::App app("Writes the generated inputs of the benchmarks.");
    std::vector<std::string> shapes;
    obj_adapter::bench::InputFolder folder;
    double megabytes = 20;
    app.add_option("shapes", shapes, "grid, quads, ..., or models")->required();
    app.add_option("--size", megabytes, "of each file, in MB (10^6 bytes)");
    app.add_option("--seed", folder.seed);
    app.add_option("--models", folder.modelFolder, "real OBJ files, for the shape models");
    app.add_option("--out", folder.path)->required();
    CLI11_PARSE(app, argc, argv);
    try {
        for (const std::string& shape : shapes)
            std::printf("%s\n", folder.provide(shape, megabytes).c_str());
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "generate_inputs: %s\n", failure.what());
        return 1;
    }
}
