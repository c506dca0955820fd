// Whole texts read as the slow twin reads them: every record, group, material and
// message.
#include "model/objModel.h"
#include "support/generatedFile.h"
#include "support/importScenarios.h"
#include "support/messageRecorder.h"
#include "support/printedModel.h"
#include "support/randomSource.h"
#include "support/slowObjReader.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>
#include <obj_adapter/obj_adapter.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace obj_adapter::test {
namespace {

const std::string FIRST_MESSAGES = "3|Obj Converter Import:\n3|Reading input file...\n";
const std::string LAST_MESSAGES = "3|Done reading input.\n3|Obj data import complete.\n";

bool openLibrary(void* materials, const char* name, const char** text, std::size_t* size) {
    const auto& libraries = static_cast<const SlowMaterials*>(materials)->libraries;
    const auto library = libraries.find(name);
    if (library == libraries.end())
        return false;
    *text = library->second.data();
    *size = library->second.size();
    return true;
}

// Imports the text twice into one converter, and the twin twice into one model.
void expectReadAsByTwin(const std::string& text,
                        const std::map<std::string, std::string>& libraries = {}) {
    ObjConverter::clearInstance();
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setDataCompaction(false);
    converter->setSkipPolygonsWithoutEar(true);
    ObjModel twin;
    SlowMaterials materials{libraries, {}};
    for (const char* fileName : {"first.obj", "second.obj"}) {
        SCOPED_TRACE(fileName);
        MessageRecorder recorder;
        const std::string messages = readObjSlowly(text, fileName, twin, materials);
        ASSERT_EQ(converter->importObjDataFromMemory(fileName, text.data(), text.size(),
                                                     &openLibrary, &materials),
                  ObjConverter::CONVERTER_OK);
        ASSERT_EQ(recorder.getText(), FIRST_MESSAGES + messages + LAST_MESSAGES) << text;
        ModelView expected = viewOfModel(twin);
        expected.materials = materials.materials;
        ASSERT_EQ(printModel(viewOf(*converter)), printModel(expected)) << text;
    }
}

TEST(SlowTwin, generatedFiles) {
    constexpr unsigned FILES = 400;
    for (unsigned seed = 1; seed <= FILES; ++seed) {
        const GeneratedFile file = generateFile(seed);
        ASSERT_NO_FATAL_FAILURE(expectReadAsByTwin(file.objText, {{"generated.mtl", file.mtlText}}))
            << seed;
    }
}

TEST(SlowTwin, scenariosAndSamples) {
    for (const ImportScenario& scenario : importScenarios())
        ASSERT_NO_FATAL_FAILURE(expectReadAsByTwin(scenario.objText, scenario.options.otherFiles))
            << scenario.title;
    const std::string library = readFileBytes(std::string(OBJ_ADAPTER_SAMPLES) + "/repairs.mtl");
    for (const auto& entry : std::filesystem::directory_iterator(OBJ_ADAPTER_SAMPLES))
        ASSERT_NO_FATAL_FAILURE(
            expectReadAsByTwin(readFileBytes(entry.path().string()), {{"repairs.mtl", library}}));
}

// From some number of corners on, the short way leaves a polygon to the plain one.
TEST(SlowTwin, polygonsOfManyCorners) {
    for (const int corners : {62, 63, 64, 65, 66, 67, 100}) {
        std::string text;
        std::string face = "f";
        for (int corner = 0; corner < corners; ++corner) {
            const double angle = 6.283185307179586 * corner / corners;
            text += "v " + std::to_string(std::cos(angle)) + " " + std::to_string(std::sin(angle)) +
                    " 0\n";
            face += " " + std::to_string(corner + 1);
        }
        // Convex, and with a corner at the centre.
        text += "v 0 0 0\n";
        text += face + "\n" + face + " " + std::to_string(corners + 1) + "\n";
        ASSERT_NO_FATAL_FAILURE(expectReadAsByTwin(text)) << corners;
    }
}

// Statements a little out of the ordinary, of pieces that belong to their grammar.
class Soup {
public:
    explicit Soup(std::uint64_t seed) : random(seed) {}

    std::string text() {
        std::string soup;
        const int lines = random.between(1, 12);
        for (int line = 0; line < lines; ++line) {
            soup += piece(KEYWORDS);
            const int tokens = random.below(6);
            for (int token = 0; token < tokens; ++token) {
                soup += piece(GAPS);
                const int parts = random.between(1, 3);
                for (int part = 0; part < parts; ++part)
                    soup += piece(PARTS);
            }
            soup += piece(ENDS);
        }
        return soup;
    }

private:
    template <std::size_t SIZE>
    std::string_view piece(const std::string_view (&pieces)[SIZE]) {
        return pieces[random.below(static_cast<int>(SIZE))];
    }

    static constexpr std::string_view KEYWORDS[] = {
        "v", "v",  "v",  "v",  "vt", "vn", "f",   "f",   "f",      "f",
        "g", "o",  "V",  "vT", "Vn", "F",  "G",   "O",   "mtllib", "usemtl",
        "s", "vv", "fx", "",   " v", "#v", "\tf", "v\v", "\xFFv",  "vt\f"};
    static constexpr std::string_view GAPS[] = {" ",  " ",   " ",  " ",    "  ",    "\t",
                                                "\r", " \\", "\\", "\\\n", " \\\n", ""};
    static constexpr std::string_view PARTS[] = {"1",
                                                 "2",
                                                 "3",
                                                 "4",
                                                 "0",
                                                 "-1",
                                                 "-2",
                                                 "+1",
                                                 "/",
                                                 "/",
                                                 "//",
                                                 ".",
                                                 "5.5",
                                                 ".5",
                                                 "5.",
                                                 "-",
                                                 "e5",
                                                 "1e3",
                                                 "e-",
                                                 "nan",
                                                 "inf",
                                                 "0x1",
                                                 "x",
                                                 "1e400",
                                                 "1e-400",
                                                 "12345678901",
                                                 "999999999",
                                                 "1000000000",
                                                 "\v",
                                                 "\f",
                                                 "1.00000000000000000001",
                                                 "0.1",
                                                 "-0",
                                                 "\x80",
                                                 "007"};
    static constexpr std::string_view ENDS[] = {
        "\n", "\n", "\n", "\n", "\r\n", " \n", "\\\n", "", "\n\n", " \\\n1\n", "\\\n\\\n", "\n#\n"};

    RandomSource random;
};

TEST(SlowTwin, soupsOfStatements) {
    constexpr std::uint64_t SOUPS = 30000;
    for (std::uint64_t seed = 0; seed < SOUPS; ++seed)
        ASSERT_NO_FATAL_FAILURE(expectReadAsByTwin(Soup(seed).text())) << "seed " << seed;
}

// With bytes of every value at any place.
TEST(SlowTwin, soupsWithAnyBytes) {
    constexpr std::uint64_t SOUPS = 10000;
    for (std::uint64_t seed = 0; seed < SOUPS; ++seed) {
        std::string text = Soup(seed).text();
        RandomSource random(seed);
        const int changes = random.between(1, 3);
        for (int change = 0; change < changes && !text.empty(); ++change) {
            const int place = random.below(static_cast<int>(text.size()));
            text[static_cast<std::size_t>(place)] = static_cast<char>(random.below(256) - 128);
        }
        ASSERT_NO_FATAL_FAILURE(expectReadAsByTwin(text)) << "seed " << seed;
    }
}

}  // namespace
}  // namespace obj_adapter::test
