// What a host meets when memory runs out: nothing is thrown at it, settings keep
// their earlier values and the model stays whole.
#include "converter/converterState.h"
#include "support/countedMemory.h"
#include "support/importText.h"
#include "support/messageRecorder.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>
#include <obj_adapter/obj_adapter.h>

#include <optional>
#include <string>

namespace obj_adapter::test {
namespace {

// Texts that no string keeps inside itself.
const char EARLIER[] = "an_earlier_folder_with_a_long_name/an_earlier_file_with_a_long_name.obj";
const char LATER[] = "another_folder_with_a_much_longer_name/another_file_with_a_longer_name.obj";

// Takes the step again and again, each time with one more allocation that
// succeeds before one fails, until none has; returns how often one failed.
// prepare runs before each time, check(hasFailed) after it, both with memory.
template <typename Prepare, typename Step, typename Check>
int failAtEveryAllocation(Prepare prepare, Step step, Check check) {
    for (int successes = 0;; ++successes) {
        SCOPED_TRACE(testing::Message() << successes << " allocations succeed");
        prepare();
        failAllocationAfter(successes);
        step();
        const bool hasFailed = stopFailingAllocations();
        check(hasFailed);
        if (!hasFailed)
            return successes;
    }
}

TEST(ExhaustedMemory, thereIsNoConverterAndTheNextCallMakesOne) {
    ObjConverter* converter = nullptr;
    const int failures = failAtEveryAllocation(
        [] { ObjConverter::clearInstance(); }, [&] { converter = ObjConverter::getInstance(); },
        [&](bool hasFailed) {
            EXPECT_EQ(converter == nullptr, hasFailed);
            EXPECT_EQ(currentConverterState() == nullptr, hasFailed);
        });
    EXPECT_GE(failures, 1);
    ObjConverter::clearInstance();
}

std::string describeTexts(const ConverterSettings& settings) {
    return settings.inputPath + "|" + settings.inputFile + "|" + settings.outputPath + "|" +
           settings.outputFile + "|" + settings.subdivisionLimitType + "|" +
           std::to_string(settings.subdivisionRounds);
}

// Those that store two values keep both.
TEST(ExhaustedMemory, settersKeepTheEarlierValues) {
    const struct {
        const char* title;
        void (*set)(ObjConverter&, const char*);
    } CASES[] = {
        {"setInput", [](ObjConverter& converter, const char* text) { converter.setInput(text); }},
        {"setInputPath",
         [](ObjConverter& converter, const char* text) { converter.setInputPath(text); }},
        {"setInputFile",
         [](ObjConverter& converter, const char* text) { converter.setInputFile(text); }},
        {"setOutput", [](ObjConverter& converter, const char* text) { converter.setOutput(text); }},
        {"setOutputPath",
         [](ObjConverter& converter, const char* text) { converter.setOutputPath(text); }},
        {"setOutputFile",
         [](ObjConverter& converter, const char* text) { converter.setOutputFile(text); }},
        {"setSubdivisionRounds",
         [](ObjConverter& converter, const char* text) {
             converter.setSubdivisionRounds(text, text == LATER ? 2 : 1);
         }},
    };
    ObjConverter::clearInstance();
    ObjConverter& converter = *ObjConverter::getInstance();
    for (const auto& row : CASES) {
        SCOPED_TRACE(row.title);
        const ConverterSettings& settings = currentConverterState()->settings;
        std::string before;
        const int failures = failAtEveryAllocation(
            [&] {
                row.set(converter, EARLIER);
                before = describeTexts(settings);
            },
            [&] { row.set(converter, LATER); },
            [&](bool hasFailed) { EXPECT_EQ(describeTexts(settings) == before, hasFailed); });
        EXPECT_GE(failures, 1);
    }
    ObjConverter::clearInstance();
}

TEST(ExhaustedMemory, anImportWhoseFileNameCannotBeStoredReadsNoEarlierFile) {
    const TemporaryDirectory directory;
    const std::string earlier =
        directory.write("an_earlier_file_with_a_long_name.obj", "v 1 2 3\n");
    const std::string later = directory.write("another_file_with_a_longer_name.obj", "v 4 5 6\n");
    // The folder and the file want memory, one after the other.
    for (const int successes : {0, 1}) {
        SCOPED_TRACE(successes);
        ObjConverter::clearInstance();
        ObjConverter* converter = ObjConverter::getInstance();
        MessageRecorder recorder;
        converter->setInput(earlier.c_str());
        failAllocationAfter(successes);
        const int code = converter->importObjDataFromFile(later.c_str());
        EXPECT_TRUE(stopFailingAllocations());
        EXPECT_EQ(code, ObjConverter::CONVERTER_ERROR);
        EXPECT_EQ(recorder.getText(), "1|Stopping conversion... bad allocation\n");
        EXPECT_EQ(converter->getNumberOfVertices(), 0);
        EXPECT_EQ(currentConverterState()->settings.inputFile,
                  "an_earlier_file_with_a_long_name.obj");
    }
    ObjConverter::clearInstance();
}

// Wherever memory runs out, and whether that ends the import or costs a line.
TEST(ExhaustedMemory, anImportLeavesAWholeModel) {
    const TemporaryDirectory directory;
    directory.write("colours.mtl", "newmtl a_material_with_a_long_name\nKd 1 0 0\n");
    const std::string file = directory.write(
        "a.obj",
        "mtllib colours.mtl\nv 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\nv x\nvt 0 0\nvn 0 0 1\n"
        "f 1 2 3\nusemtl a_material_with_a_long_name\ng a_group_with_a_long_name and_another\n"
        "f 1 2 3 4\nf 1/1/1 3/1/1 4/1/1\nf 0 1 2\nf 1 2\nan_unknown_keyword_that_is_long\n"
        "usemtl a_missing_material_with_a_long_name\nf 1 2 9\n");
    int endedEarly = 0;
    int code = ObjConverter::CONVERTER_ERROR;
    failAtEveryAllocation(
        [] {
            ObjConverter::clearInstance();
            ObjConverter::getInstance();
        },
        [&] { code = ObjConverter::getInstance()->importObjDataFromFile(file.c_str()); },
        [&](bool hasFailed) {
            const bool isDone = code == ObjConverter::CONVERTER_OK;
            EXPECT_TRUE(isDone || hasFailed);
            endedEarly += isDone ? 0 : 1;
            EXPECT_EQ(findViolations(viewOf(*ObjConverter::getInstance()),
                                     isDone ? ModelState::COMPACTED : ModelState::ENDED_EARLY),
                      "");
        });
    EXPECT_GT(endedEarly, 10);
    ObjConverter::clearInstance();
}

// The faces of a group join its list together. Without memory for the list none of
// them is there, each is reported, and reading goes on.
TEST(ExhaustedMemory, facesWithoutMemoryForTheirGroupsListAreReported) {
    const TemporaryDirectory directory;
    std::string text = "v 0 0 0\nv 1 0 0\nv 1 1 0\nf 1 2 3\nf 1 2 3\nf 1 2 3\nf 1 2 3\nf 1 2 3\n";
    text += "g second\nf 2 3 1\nf 3 1 2\ng third\nf 1 3 2\n";
    const std::string file = directory.write("a.obj", text);
    int listsWithoutMemory = 0;
    MessageRecorder* recorder = nullptr;
    std::optional<MessageRecorder> present;
    failAtEveryAllocation(
        [&] {
            present.reset();
            ObjConverter::clearInstance();
            ObjConverter::getInstance()->setDataCompaction(false);
            recorder = &present.emplace();
        },
        [&] { ObjConverter::getInstance()->importObjDataFromFile(file.c_str()); },
        [&](bool) {
            ObjConverter& converter = *ObjConverter::getInstance();
            const std::string FAILURE = "1|Could not process face. bad allocation Skipping face.\n";
            if (recorder->getText().find(FAILURE + FAILURE + "3|Done") == std::string::npos)
                return;
            // Those of the second group, and of them alone.
            ++listsWithoutMemory;
            EXPECT_EQ(converter.getNumberOfFaces(), 6);
            EXPECT_EQ(converter.getNumberOfGroups(), 2);
            EXPECT_EQ(converter.getGroup(1)->name, "third");
            EXPECT_EQ(findViolations(viewOf(converter), ModelState::READ), "");
        });
    EXPECT_EQ(listsWithoutMemory, 1);
    present.reset();
    ObjConverter::clearInstance();
}

TEST(ExhaustedMemory, thereIsNoTreeAndTheNextCallBuildsOne) {
    importText(
        "v 0 0 0\nv 1 0 0\nv 1 1 0\ng a_group_with_a_long_name\nf 1 2 3\n"
        "g another_group_with_a_long_name\nf 1 2 3\n");
    ObjConverter* converter = ObjConverter::getInstance();
    ObjHierarchyNode* root = nullptr;
    const int failures =
        failAtEveryAllocation([] {}, [&] { root = converter->getRootOfHierarchy(); },
                              [&](bool hasFailed) { EXPECT_EQ(root == nullptr, hasFailed); });
    EXPECT_GE(failures, 3);
    EXPECT_EQ(root->getNumberOfChildren(), 2);
    ObjConverter::clearInstance();
}

}  // namespace
}  // namespace obj_adapter::test
