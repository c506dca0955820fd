// The stages of an import, in their order, with their messages.
#include "converter/converterState.h"
#include "support/describe.h"
#include "support/importText.h"
#include "support/messageRecorder.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <string>

namespace obj_adapter::test {
namespace {

const std::string TRIANGLE = "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n";

const std::string READ_MESSAGES =
    "3|Obj Converter Import:\n"
    "3|Reading input file...\n"
    "3|Done reading input.\n";

TEST(ImportPipeline, withDefaults) {
    ImportOptions options;
    options.compaction = true;
    const ImportResult result = importText(TRIANGLE, options);
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(result.allMessages, READ_MESSAGES +
                                      "3|Compacting...\n"
                                      "3|Done compacting.\n"
                                      "3|Obj data import complete.\n");
}

TEST(ImportPipeline, withoutCompaction) {
    const ImportResult result = importText(TRIANGLE);
    EXPECT_EQ(result.allMessages, READ_MESSAGES + "3|Obj data import complete.\n");
}

TEST(ImportPipeline, reversesOnlyWithBothFlags) {
    for (const bool hierarchy : {false, true}) {
        for (const bool reverse : {false, true}) {
            SCOPED_TRACE(hierarchy);
            SCOPED_TRACE(reverse);
            ImportOptions options;
            options.hierarchy = hierarchy;
            options.reverse = reverse;
            const ImportResult result = importText("g a b\n" + TRIANGLE, options);
            const bool isReversed = hierarchy && reverse;
            EXPECT_EQ(describeGroups(result.model), isReversed ? "b/a: 0" : "a/b: 0");
            EXPECT_EQ(result.allMessages,
                      READ_MESSAGES +
                          (isReversed ? "3|Reversing the order of group names...\n"
                                        "3|Done reversing group names.\n"
                                      : "") +
                          "3|Obj data import complete.\n");
        }
    }
}

TEST(ImportPipeline, subdivisionTurnsCompactionOnForGood) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("a.obj", TRIANGLE);
    ImportOptions options;
    options.limitType = "ITERATIONS";
    options.rounds = 2;
    const ImportResult first = importFile(file, options);
    EXPECT_EQ(first.allMessages,
              READ_MESSAGES +
                  "2|Data compaction was turned off, but data must be compacted before "
                  "subdivision can be performed. Compaction setting will be overridden.\n"
                  "3|Compacting...\n"
                  "3|Done compacting.\n"
                  "3|Subdividing...\n"
                  "3|Subdivision 1...\n"
                  "3|Subdivision 2...\n"
                  "3|Done Subdividing.\n"
                  "3|Obj data import complete.\n");
    EXPECT_EQ(first.model.faces.size(), 16U);

    ObjConverter* converter = ObjConverter::getInstance();
    converter->setSubdivisionRounds("ITERATIONS", 0);
    MessageRecorder recorder;
    EXPECT_EQ(converter->importObjDataFromFile(nullptr), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(recorder.getText(), READ_MESSAGES +
                                      "3|Compacting...\n"
                                      "3|Done compacting.\n"
                                      "3|Obj data import complete.\n");
    EXPECT_EQ(findViolations(viewOf(*converter), ModelState::COMPACTED), "");
}

TEST(ImportPipeline, limitTypesAreComparedExactly) {
    const std::string invalid = "2|Invalid subdivision limit type. Assuming Iterations...\n";
    const std::string oneRound = "3|Subdivision 1...\n";
    const struct {
        std::string limitType;
        int value;
        std::string messages;
        std::size_t faces;
    } CASES[] = {
        {"ITERATIONS", 1, oneRound, 4},
        {"iterations", 1, invalid + oneRound, 4},
        {"", 1, invalid + oneRound, 4},
        {"ITERATIONS ", 1, invalid + oneRound, 4},
        {"ITERATION", 1, invalid + oneRound, 4},
        {"FACE_COUNT", 10, "3|Subdividing to 4 faces...\n", 4},
        {"FACE_COUNT", 4, "", 1},
        {"VERTEX_COUNT", 7, "3|Subdividing to up to 6 vertices...\n", 4},
        {"VERTEX_COUNT", 6, "", 1},
    };
    for (const auto& row : CASES) {
        SCOPED_TRACE(row.limitType + " " + std::to_string(row.value));
        ImportOptions options;
        options.compaction = true;
        options.limitType = row.limitType;
        options.rounds = row.value;
        const ImportResult result = importText(TRIANGLE, options);
        EXPECT_EQ(result.allMessages, READ_MESSAGES +
                                          "3|Compacting...\n"
                                          "3|Done compacting.\n"
                                          "3|Subdividing...\n" +
                                          row.messages +
                                          "3|Done Subdividing.\n"
                                          "3|Obj data import complete.\n");
        EXPECT_EQ(result.model.faces.size(), row.faces);
    }
}

TEST(ImportPipeline, noRoundsMeanNoSubdivision) {
    for (const int rounds : {0, -1, -2147483647 - 1}) {
        ImportOptions options;
        options.compaction = true;
        options.limitType = "unknown";
        options.rounds = rounds;
        const ImportResult result = importText(TRIANGLE, options);
        EXPECT_EQ(result.allMessages, READ_MESSAGES +
                                          "3|Compacting...\n"
                                          "3|Done compacting.\n"
                                          "3|Obj data import complete.\n");
    }
}

TEST(ImportPipeline, conflictingFacesAreNotSubdivided) {
    ImportOptions options;
    options.compaction = true;
    options.limitType = "ITERATIONS";
    options.rounds = 1;
    const ImportResult result = importText(TRIANGLE + "f 1 3 2\n", options);
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_OK);
    EXPECT_EQ(result.model.faces.size(), 2U);
    EXPECT_EQ(result.allMessages,
              READ_MESSAGES +
                  "3|Compacting...\n"
                  "3|Done compacting.\n"
                  "3|Subdividing...\n"
                  "1|The data contains at least one pair of faces that have the same vertex "
                  "coordinates. Subdivision cannot be used.\n"
                  "3|Done Subdividing.\n"
                  "3|Obj data import complete.\n");
}

TEST(ImportPipeline, noInputFile) {
    ObjConverter::clearInstance();
    MessageRecorder recorder;
    ObjConverter* converter = ObjConverter::getInstance();
    EXPECT_EQ(converter->importObjDataFromFile(nullptr), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getText(), "1|No input file specified.\n");
    recorder.clear();
    EXPECT_EQ(converter->importObjDataFromFile("model.obj"), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getText(), "1|No input file specified.\n");
    recorder.clear();
    EXPECT_EQ(converter->importObjDataFromFile(""), ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(recorder.getText(), "1|No input file specified.\n");
    EXPECT_EQ(converter->getNumberOfGroups(), 0);
}

TEST(ImportPipeline, aFileThatCannotBeOpened) {
    const TemporaryDirectory directory;
    const ImportResult missing = importFile(directory.getPath() + "none.obj");
    EXPECT_EQ(missing.code, ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(missing.allMessages,
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "1|Stopping conversion... Unable to open file\n");
    EXPECT_TRUE(missing.model.groups.empty());

    std::filesystem::create_directory(pathFromUtf8(directory.getPath() + "folder.obj"));
    const ImportResult folder = importFile(directory.getPath() + "folder.obj");
    EXPECT_EQ(folder.code, ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(folder.allMessages,
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "1|Stopping conversion... Unable to open file\n");
}

#if defined(__linux__)

// The process's own memory opens like a file; its first page is never there.
TEST(ImportPipeline, aFileThatOpensAndCannotBeRead) {
    const ImportResult result = importFile("/proc/self/mem");
    EXPECT_EQ(result.code, ObjConverter::CONVERTER_ERROR);
    EXPECT_EQ(result.allMessages,
              "3|Obj Converter Import:\n"
              "3|Reading input file...\n"
              "1|Problem reading obj file Unable to read file\n"
              "1|Stopping conversion... Unable to read obj file.\n");
    EXPECT_EQ(describeGroups(result.model), "mem:");
}

#endif

TEST(ImportPipeline, pathAndFileSetByThemselvesAreJoinedAsTheyAre) {
    const TemporaryDirectory directory;
    directory.write("a.obj", TRIANGLE);
    ObjConverter::clearInstance();
    ObjConverter* converter = ObjConverter::getInstance();
    converter->setInputPath(directory.getPath().c_str());
    converter->setInputFile("a.obj");
    EXPECT_EQ(converter->importObjDataFromFile(nullptr), ObjConverter::CONVERTER_OK);
    EXPECT_EQ(converter->getNumberOfFaces(), 1);
}

TEST(ImportPipeline, aSecondImportAppends) {
    const TemporaryDirectory directory;
    const std::string first = directory.write("one.obj", "g part\n" + TRIANGLE);
    const std::string second = directory.write("two.obj", "v 5 5 5\nf -1 1 2\nf 4 2 3\ng other\n");
    importFile(first);
    ObjConverter* converter = ObjConverter::getInstance();
    EXPECT_EQ(converter->importObjDataFromFile(second.c_str()), ObjConverter::CONVERTER_OK);
    const ModelView model = viewOf(*converter);
    EXPECT_EQ(describeVertices(model), "(0 0 0 w1) (1 0 0 w1) (0 1 0 w1) (5 5 5 w1)");
    EXPECT_EQ(describeFaces(model), "[0 1 2] [3 0 1] [3 1 2]");
    EXPECT_EQ(describeGroups(model), "part: 0; two: 1 2");
    EXPECT_EQ(currentConverterState()->model.name, "two");
    EXPECT_EQ(findViolations(model, ModelState::READ), "");
}

TEST(ImportPipeline, withoutACallbackTheResultIsTheSame) {
    const TemporaryDirectory directory;
    const std::string file = directory.write("a.obj", TRIANGLE + "f 1 2\nx y\n");
    ObjConverter::clearInstance();
    EXPECT_EQ(ObjConverter::getInstance()->importObjDataFromFile(file.c_str()),
              ObjConverter::CONVERTER_OK);
    EXPECT_EQ(ObjConverter::getInstance()->getNumberOfFaces(), 1);
    ObjConverter::clearInstance();
}

}  // namespace
}  // namespace obj_adapter::test
