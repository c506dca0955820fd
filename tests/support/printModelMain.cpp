// Prints what imports give, with every bit, so that builds and runs can be
// compared by their output. Run by the test printedModels.
//
//     print_model [--plain] [--compacted] [--subdivided] [--reversed]
//                 [--generated=COUNT] FILE|FOLDER...
//
// Imports every file, and every .obj file below a folder, with the settings
// that are named, or with each of them; and before these so many files made from
// the seeds 0, 1, 2, ...
#include "support/generatedFile.h"
#include "support/importText.h"
#include "support/modelFiles.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace obj_adapter::test {

namespace {

const std::string GENERATED_OPTION = "--generated=";

struct Setting {
    std::string option;
    ImportOptions options;
};

std::vector<Setting> getSettings() {
    ImportOptions plain;
    // A run over any file must end.
    plain.skipPolygonsWithoutEar = true;

    ImportOptions compacted = plain;
    compacted.compaction = true;

    ImportOptions subdivided = compacted;
    subdivided.limitType = "ITERATIONS";
    subdivided.rounds = 1;

    ImportOptions reversed = compacted;
    reversed.hierarchy = true;
    reversed.reverse = true;

    return {{"--plain", plain},
            {"--compacted", compacted},
            {"--subdivided", subdivided},
            {"--reversed", reversed}};
}

// The nodes from the root on, parents first, each with its depth.
std::string printTree() {
    std::string text;
    std::vector<std::pair<ObjHierarchyNode*, int>> open;
    open.emplace_back(ObjConverter::getInstance()->getRootOfHierarchy(), 0);
    while (!open.empty()) {
        const auto [node, depth] = open.back();
        open.pop_back();
        text += "node " + std::to_string(depth) + " \"" + node->getName() + "\"\n";
        for (int child = node->getNumberOfChildren() - 1; child >= 0; --child)
            open.emplace_back(node->getChild(child), depth + 1);
    }
    return text;
}

void print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void printResult(const std::string& name, const Setting& setting, const ImportResult& result) {
    print("import " + setting.option + " " + name + "\n");
    print("code " + std::to_string(result.code) + "\n" + result.allMessages);
    print(printModel(result.model));
    // Last: it renames groups.
    print(printTree());
}

void printImport(const std::string& fileName, const Setting& setting) {
    printResult(fileName, setting, importFile(fileName, setting.options));
}

void printGeneratedImport(unsigned seed, const Setting& setting) {
    const GeneratedFile file = generateFile(seed);
    ImportOptions options = setting.options;
    options.otherFiles["generated.mtl"] = file.mtlText;
    printResult("seed " + std::to_string(seed), setting, importText(file.objText, options));
}

std::vector<std::string> findFiles(const std::string& argument) {
    if (std::filesystem::is_directory(pathFromUtf8(argument)))
        return findObjFiles(argument);
    return {argument};
}

int run(const std::vector<std::string>& arguments) {
    std::vector<Setting> chosen;
    std::vector<std::string> files;
    unsigned generatedFiles = 0;
    for (const std::string& argument : arguments) {
        if (argument.rfind(GENERATED_OPTION, 0) == 0) {
            generatedFiles =
                static_cast<unsigned>(std::stoul(argument.substr(GENERATED_OPTION.size())));
            continue;
        }
        bool isOption = false;
        for (const Setting& setting : getSettings()) {
            if (argument != setting.option)
                continue;
            chosen.push_back(setting);
            isOption = true;
        }
        if (isOption)
            continue;
        for (const std::string& file : findFiles(argument))
            files.push_back(file);
    }
    if (chosen.empty())
        chosen = getSettings();
    for (unsigned seed = 0; seed < generatedFiles; ++seed)
        for (const Setting& setting : chosen)
            printGeneratedImport(seed, setting);
    for (const std::string& file : files)
        for (const Setting& setting : chosen)
            printImport(file, setting);
    return files.empty() && generatedFiles == 0 ? 1 : 0;
}

}  // namespace

}  // namespace obj_adapter::test

int main(int argc, char** argv) {
    try {
#if defined(_WIN32)
        // The same bytes as elsewhere.
        _setmode(_fileno(stdout), _O_BINARY);
#endif
        testing::InitGoogleTest(&argc, argv);
        const int code = obj_adapter::test::run({argv + 1, argv + argc});
        // Outside of a test, the model checker's findings gather here.
        const bool isSound = !testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed();
        return isSound && std::fflush(stdout) == 0 ? code : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "print_model: %s\n", failure.what());
        return 1;
    }
}
