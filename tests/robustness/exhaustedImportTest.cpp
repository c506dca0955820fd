// Whole imports, of every kind that there is, with every single allocation made to
// fail: once, and from there on.
//
// tests/converter/exhaustedMemoryTest.cpp has the converter's own operations.
#include "support/countedMemory.h"
#include "support/importScenarios.h"
#include "support/printedModel.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace obj_adapter::test {
namespace {

// A model in one number: there are thousands to compare, and large ones.
class Fingerprint {
public:
    explicit Fingerprint(const ModelView& model) {
        for (const Vertex& vertex : model.vertices)
            add(vertex.x, vertex.y, vertex.z, vertex.w, vertex.index);
        for (const TexturePoint& point : model.texturePoints)
            add(point.u, point.v, point.w, point.index);
        for (const NormalPoint& normal : model.normalPoints)
            add(normal.x, normal.y, normal.z, normal.index);
        for (const Face& face : model.faces) {
            for (const FaceElement& corner : face.elements)
                add(corner.vertexIndex, corner.textureIndex, corner.normalIndex);
            add(face.materialIndex, face.groupIndex);
        }
        for (const Group& group : model.groups) {
            add(group.name, group.getFullName());
            for (const int face : group.faceIndices)
                add(face);
        }
        ModelView materials;
        materials.materials = model.materials;
        add(printModel(materials), model.groups.size(), model.faces.size());
    }

    bool operator==(const Fingerprint&) const = default;

private:
    template <typename... Values>
    void add(const Values&... values) {
        (addOne(values), ...);
    }
    template <typename Value>
    void addOne(const Value& value) {
        constexpr std::uint64_t FACTOR = 0x9E3779B97F4A7C15;
        constexpr int TURN = 29;
        number = std::rotl(number ^ std::hash<Value>()(value), TURN) * FACTOR;
    }

    std::uint64_t number = 1;
};

Fingerprint fingerprintNow() {
    return Fingerprint(viewOf(*ObjConverter::getInstance()));
}

struct Outcome {
    int code = 0;
    std::vector<std::string> messages;  // "level|text"
    Fingerprint model{ModelView()};

    std::string lastMessage() const { return messages.empty() ? "" : messages.back(); }

    bool operator==(const Outcome&) const = default;
};

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

// What the host sees of the import that runs. Keeping it takes memory of the
// test's own, which never runs out.
struct Witness {
    std::vector<std::string> messages;

    // The model as each stage found it: compaction, and every round.
    std::vector<Fingerprint> modelsBeforeStages;

    static bool beginsStage(std::string_view message) {
        return message == "3|Compacting..." || startsWith(message, "3|Subdivision ") ||
               startsWith(message, "3|Subdividing to ");
    }
};

Witness witness;

void receive(int level, const char* text) {
    const MemoryInterlude interlude;
    witness.messages.push_back(std::to_string(level) + "|" + text);
    if (Witness::beginsStage(witness.messages.back()))
        witness.modelsBeforeStages.push_back(fingerprintNow());
}

// What may stand in the messages beside those of an import with enough memory:
// the reason itself, and what other lines make of the gap that it left.
bool isConsequence(std::string_view message) {
    static constexpr std::string_view BEGINNINGS[] = {
        "1|Could not split non-triangular face. Skipping face.",
        "1|Could not find material library ",
        "1|Could not find material \"",
        "1|Problem processing map options.Unable to process texture map options",
        "2|Error processing texture map. Map will be skipped.",
        "2|Bad input values for -mm. Option skipped.",
        "2|Bad input values for -texres. Option skipped.",
        "1|Error processing New Material: ",
        "1|Problem with material library: Could not proccess new material",
        "1|Stopping conversion... Unable to read obj file.",
        "3|Using Mtllib file: ",
        "2|Number of faces where vertex, texture, or normal indices had to be changed",
    };
    const auto begins = [&](std::string_view beginning) { return startsWith(message, beginning); };
    return message.find("bad allocation") != std::string_view::npos ||
           Witness::beginsStage(message) ||  // as other faces are left
           std::any_of(std::begin(BEGINNINGS), std::end(BEGINNINGS), begins);
}

class ExhaustedImport : public testing::TestWithParam<ImportScenario> {
protected:
    void SetUp() override {
        for (const auto& [name, content] : options().otherFiles)
            directory.write(name, content);
        fileName = directory.write(options().fileName, GetParam().objText);
        undisturbed = import();
        modelsBetweenStages = witness.modelsBeforeStages;
        modelsBetweenStages.push_back(undisturbed.model);
        ASSERT_EQ(undisturbed.code, ObjConverter::CONVERTER_OK);
        expectedMessages.insert(undisturbed.messages.begin(), undisturbed.messages.end());
        cleanUp();
    }
    void TearDown() override { cleanUp(); }

    static void cleanUp() {
        witness = {};
        ObjConverter::clearInstance();
    }

    static const ImportOptions& options() { return GetParam().options; }

    static void prepareConverter() {
        witness = {};
        ObjConverter::clearInstance();
        ObjConverter* converter = ObjConverter::getInstance();
        converter->setMsgCallback(&receive);
        converter->setDataCompaction(options().compaction);
        converter->setUseGroupNameHierarchy(options().hierarchy);
        converter->setHierarchyReverseGroupNames(options().reverse);
        converter->setHierarchyShowLastNamesOnly(options().showLastNamesOnly);
        converter->setSkipPolygonsWithoutEar(options().skipPolygonsWithoutEar);
        converter->setSubdivisionRounds(options().limitType.c_str(), options().rounds);
    }

    Outcome importAgain() const {
        Outcome outcome;
        witness = {};
        outcome.code = ObjConverter::getInstance()->importObjDataFromFile(fileName.c_str());
        outcome.messages = witness.messages;
        outcome.model = fingerprintNow();
        return outcome;
    }

    Outcome import() const {
        prepareConverter();
        return importAgain();
    }

    // The same file with so many allocations that succeed; empty when none failed.
    std::optional<Outcome> importUnderNeed(int successes, bool failsOnce) const {
        prepareConverter();
        ObjConverter* converter = ObjConverter::getInstance();
        Outcome outcome;
        bool hasFailed = false;
        if (failsOnce) {
            failAllocationAfter(successes);
            outcome.code = converter->importObjDataFromFile(fileName.c_str());
            hasFailed = stopFailingAllocations();
        } else {
            const AllocationBudget budget(successes);
            outcome.code = converter->importObjDataFromFile(fileName.c_str());
            hasFailed = budget.isExceeded();
        }
        outcome.messages = witness.messages;
        outcome.model = fingerprintNow();
        return hasFailed ? std::optional(outcome) : std::nullopt;
    }

    void checkOutcome(const Outcome& outcome) const {
        EXPECT_EQ(findViolations(viewOf(*ObjConverter::getInstance()),
                                 expectedState(outcome.code, options())),
                  "");
        if (outcome.code == ObjConverter::CONVERTER_OK) {
            EXPECT_EQ(outcome.lastMessage(), "3|Obj data import complete.");
        } else {
            EXPECT_TRUE(outcome.lastMessage() == "1|Stopping conversion... bad allocation" ||
                        outcome.lastMessage() ==
                            "1|Stopping conversion... Unable to read obj file.")
                << outcome.lastMessage();
        }
        for (const std::string& message : outcome.messages)
            EXPECT_TRUE(expectedMessages.count(message) == 1 || isConsequence(message)) << message;
        // Nothing is lost in silence.
        if (outcome.messages == undisturbed.messages) {
            EXPECT_TRUE(outcome.model == undisturbed.model);
        }
    }

    // A stage is done whole or not at all. It may be the one after the last that
    // the host heard of: announcing a stage takes memory as well.
    void checkStages(const Outcome& outcome) const {
        const std::size_t begunStages = witness.modelsBeforeStages.size();
        if (outcome.code == ObjConverter::CONVERTER_OK || begunStages == 0)
            return;
        const bool isUndone = outcome.model == witness.modelsBeforeStages.back();
        const bool isDone = begunStages < modelsBetweenStages.size() &&
                            outcome.model == modelsBetweenStages[begunStages];
        EXPECT_TRUE(isUndone || isDone);
    }

    // The host goes on: the tree, another import into the same converter, a
    // fresh start; and nothing is left behind.
    void checkThatHostGoesOn() const {
        ObjHierarchyNode* root = ObjConverter::getInstance()->getRootOfHierarchy();
        ASSERT_NE(root, nullptr);
        const Outcome second = importAgain();
        EXPECT_EQ(second.code, ObjConverter::CONVERTER_OK);
        EXPECT_EQ(second.lastMessage(), "3|Obj data import complete.");
        EXPECT_EQ(findViolations(viewOf(*ObjConverter::getInstance()),
                                 expectedState(second.code, options())),
                  "");
        EXPECT_TRUE(import() == undisturbed);
    }

    int failEveryAllocation(bool failsOnce) {
        for (int successes = 0;; ++successes) {
            SCOPED_TRACE(testing::Message() << successes << " allocations succeed, then "
                                            << (failsOnce ? "one fails" : "all fail"));
            const std::size_t blocksBefore = getNumberOfBlocksInUse();
            {
                const std::optional<Outcome> outcome = importUnderNeed(successes, failsOnce);
                if (!outcome)
                    return successes;
                checkOutcome(*outcome);
                checkStages(*outcome);
                if (successes % hostChecksApart == 0)
                    checkThatHostGoesOn();
            }
            cleanUp();
            EXPECT_EQ(getNumberOfBlocksInUse(), blocksBefore);
            if (testing::Test::HasFailure())
                return successes;
        }
    }

    // After every failure, or only after some where imports take long.
    int hostChecksApart = 1;

    TemporaryDirectory directory;
    std::string fileName;
    Outcome undisturbed;
    std::set<std::string> expectedMessages;
    std::vector<Fingerprint> modelsBetweenStages;
};

// Fewer would mean that the failures do not reach the import.
constexpr int LEAST_ALLOCATIONS = 8;

TEST_P(ExhaustedImport, oneAllocationFails) {
    EXPECT_GE(failEveryAllocation(true), LEAST_ALLOCATIONS);
}

TEST_P(ExhaustedImport, allAllocationsFailFromThereOn) {
    EXPECT_GE(failEveryAllocation(false), LEAST_ALLOCATIONS);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ExhaustedImport, testing::ValuesIn(importScenarios()),
                         [](const testing::TestParamInfo<ImportScenario>& scenario) {
                             return std::string(scenario.param.title);
                         });

// --- Tables with pages of their own ----------------------------------------------

// The pages of the process in bytes; 0 where that cannot be told.
std::size_t getAddressBytes() {
    std::size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    constexpr std::size_t PAGE_SIZE = 4096;
    return pages * PAGE_SIZE;
}

// A table that gets no pages is served by operator new; so a single failure goes
// unnoticed, and only both together end a stage.
class ExhaustedPages : public ExhaustedImport {
protected:
    ExhaustedPages() { hostChecksApart = 10; }

    PagesAllowed pages;
};

TEST_P(ExhaustedPages, oneRequestFails) {
    EXPECT_GE(failEveryAllocation(true), LEAST_ALLOCATIONS);
}

TEST_P(ExhaustedPages, allRequestsFailFromThereOn) {
    EXPECT_GE(failEveryAllocation(false), LEAST_ALLOCATIONS);
}

// Every block counts, but pages have to be looked for: each import takes some ten
// megabytes of them.
TEST_P(ExhaustedPages, areAllGivenBack) {
    const auto importAndClear = [&](int successes) {
        importUnderNeed(successes, false);
        cleanUp();
    };
    constexpr int ROUNDS = 40;
    importAndClear(ROUNDS);
    const std::size_t before = getAddressBytes();
    for (int successes = 0; successes < ROUNDS; ++successes)
        importAndClear(4 * successes);
    // One range of addresses for each import would be ten times as much.
#if defined(__SANITIZE_ADDRESS__)
    // The sanitizer keeps up to 256 MB of freed blocks to itself.
    constexpr std::size_t TOLERANCE = std::size_t{400} * 1024 * 1024;
#else
    constexpr std::size_t TOLERANCE = std::size_t{64} * 1024 * 1024;
#endif
    EXPECT_LT(getAddressBytes(), before + TOLERANCE);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ExhaustedPages, testing::ValuesIn(largeImportScenarios()),
                         [](const testing::TestParamInfo<ImportScenario>& scenario) {
                             return std::string(scenario.param.title);
                         });

}  // namespace
}  // namespace obj_adapter::test
