// Loop subdivision when memory runs out, and how much it takes.
#include "model/objModel.h"
#include "processing/subdivision.h"
#include "support/countedMemory.h"
#include "support/generatedMeshes.h"
#include "support/importText.h"
#include "support/modelChecker.h"
#include "support/modelComparison.h"
#include "support/modelView.h"
#include "support/printedModel.h"
#include "support/slowSubdivision.h"
#include "support/temporaryDirectory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>

namespace obj_adapter::test {

namespace {

constexpr int ONE_ROUND = 1;

// Lets the first, second, ... allocation of a call fail until it succeeds. After
// each failure the model must be as before.
void expectAllOrNothing(ObjModel& model, int leastAllocations) {
    ObjModel twin;
    copyTables(model, twin);
    subdivideOnceSlowly(twin);
    model.hierarchyValid = true;
    const std::string before = printState(model);
    int allocations = 0;
    for (bool isDone = false; !isDone; ++allocations) {
        bool hasFailed = false;
        failAllocationAfter(allocations);
        try {
            subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
        } catch (const std::bad_alloc&) {
            hasFailed = true;
        }
        isDone = !stopFailingAllocations();
        // Giving memory back may fail too, in silence.
        ASSERT_EQ(hasFailed, !isDone) << allocations;
        if (hasFailed) {
            ASSERT_EQ(firstDifference(before, printState(model)), "") << allocations;
        }
    }
    EXPECT_GT(allocations, leastAllocations);
    EXPECT_EQ(firstDifference(printState(twin), printState(model)), "");
}

TEST(SubdivisionMemory, aRoundIsDoneWholeOrNotAtAll) {
    RandomSource random(5);
    ObjModel model;
    fillModel(roughGrid(5, 5, random), model);
    decorateFaces(model, random);
    addTexturePoint(model, 1, 2);
    for (FaceElement& corner : model.faces[0].elements)
        corner.textureIndex = 0;
    expectAllOrNothing(model, 10);
}

TEST(SubdivisionMemory, aRoundWithAHubIsDoneWholeOrNotAtAll) {
    RandomSource random(6);
    Mesh mesh = fan(200, true);
    shuffle(mesh.triangles, random);
    ObjModel model;
    fillModel(mesh, model);
    expectAllOrNothing(model, 15);
}

TEST(SubdivisionMemory, aRoundOnPagesOfItsOwnIsDoneWholeOrNotAtAll) {
    // Large enough that every table and every scratch array has its own. Where one
    // gets none the heap serves, so that all further requests must fail as well.
    RandomSource random(9);
    ObjModel model;
    fillModel(roughGrid(100, 100, random), model);
    decorateFaces(model, random);
    ObjModel twin;
    copyTables(model, twin);
    ObjModel before;
    copyTables(model, before);
    subdivideOnceSlowly(twin);
    const PagesAllowed pagesAllowed;
    int allocations = 0;
    for (bool isDone = false; !isDone; ++allocations) {
        try {
            const AllocationBudget budget(allocations);
            subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
            isDone = true;
        } catch (const std::bad_alloc&) {
            ASSERT_TRUE(sameState(before, model)) << allocations;
        }
    }
    EXPECT_GT(allocations, 10);
    EXPECT_TRUE(sameState(twin, model));
}

// As compaction leaves the faces, so that the second round goes by the first.
void sortFaces(ObjModel& model) {
    std::sort(model.faces.begin(), model.faces.end());
}

TEST(SubdivisionMemory, aFailingSecondRoundLeavesTheFirst) {
    RandomSource random(7);
    ObjModel before;
    fillModel(roughGrid(3, 3, random), before);
    for (const bool isSorted : {false, true}) {
        SCOPED_TRACE(isSorted);
        if (isSorted)
            sortFaces(before);
        ObjModel oneRound;
        copyTables(before, oneRound);
        subdivide(LIMIT_ITERATIONS, 1, oneRound);
        bool hasMetFirstRound = false;
        for (int allocations = 0;; ++allocations) {
            ObjModel model;
            copyTables(before, model);
            failAllocationAfter(allocations);
            try {
                subdivide(LIMIT_ITERATIONS, 2, model);
            } catch (const std::bad_alloc&) {
            }
            if (!stopFailingAllocations())
                break;
            const std::string state = printState(model);
            const bool isFirstRound = state == printState(oneRound);
            ASSERT_TRUE(isFirstRound || state == printState(before)) << allocations;
            ASSERT_TRUE(isFirstRound || !hasMetFirstRound) << allocations;
            hasMetFirstRound = isFirstRound;
        }
        EXPECT_TRUE(hasMetFirstRound);
    }
}

// All that is in use at the worst moment, the old and the new model included, even
// where a table that grows stands in memory twice.
void expectMostBytesPerFace(const Mesh& mesh, bool isTextured, std::size_t mostBytes) {
    for (int rounds = 1; rounds <= 3; ++rounds) {
        SCOPED_TRACE(rounds);
        const std::size_t bytesBefore = getBytesInUse();
        ObjModel model;
        fillModel(mesh, model);
        for (int point = 0; isTextured && point < CORNERS_PER_FACE; ++point)
            addTexturePoint(model, point, point);
        for (Face& face : model.faces) {
            for (int corner = 0; isTextured && corner < CORNERS_PER_FACE; ++corner)
                face.elements[corner].textureIndex = corner;
        }
        sortFaces(model);
        model.faces.shrink_to_fit();
        model.vertices.shrink_to_fit();
        model.groups[0].faceIndices.shrink_to_fit();
        watchBytesInUse();
        subdivide(LIMIT_ITERATIONS, rounds, model);
        EXPECT_LE(getMostBytesInUse() - bytesBefore, mostBytes * model.faces.size());
    }
}

TEST(SubdivisionMemory, aRoundNeedsAtMostNinetySixBytesForEachNewFace) {
    RandomSource random(8);
    expectMostBytesPerFace(roughGrid(60, 60, random), false, 96);
    expectMostBytesPerFace(roughTorus(60, 60, random), false, 96);
}

TEST(SubdivisionMemory, aRoundNeedsAtMostOneHundredAndThirtyBytesWithTextures) {
    RandomSource random(8);
    expectMostBytesPerFace(roughGrid(60, 60, random), true, 130);
    expectMostBytesPerFace(roughTorus(60, 60, random), true, 130);
}

TEST(SubdivisionMemory, aHostThatThrowsStopsBeforeTheRound) {
    ObjModel model;
    fillModel(tetrahedron(), model);
    const std::string before = printState(model);
    ObjConverter::getInstance()->setMsgCallback(
        [](int, const char*) { throw std::runtime_error("enough"); });
    EXPECT_THROW(subdivide(LIMIT_ITERATIONS, ONE_ROUND, model), std::runtime_error);
    ObjConverter::getInstance()->setMsgCallback(nullptr);
    EXPECT_EQ(printState(model), before);
}

// A host that lets one allocation fail from the announcement of a certain round to
// the message after it.
class GreedyHost {
public:
    GreedyHost(const char* announcement, int allocationsLeft) {
        announcedRound = announcement;
        allocations = allocationsLeft;
        hasRunOut = false;
        ObjConverter::getInstance()->setMsgCallback(&GreedyHost::receive);
    }
    ~GreedyHost() { ObjConverter::getInstance()->setMsgCallback(nullptr); }
    GreedyHost(const GreedyHost&) = delete;
    GreedyHost& operator=(const GreedyHost&) = delete;

    const std::string& getLastMessage() const { return lastMessage; }
    bool hasFailed() const { return hasRunOut; }

private:
    static void receive(int level, const char* text) {
        if (isFailing)
            hasRunOut = stopFailingAllocations();
        lastMessage = std::to_string(level) + "|" + text;
        isFailing = lastMessage == announcedRound;
        if (isFailing)
            failAllocationAfter(allocations);
    }

    static inline std::string announcedRound;
    static inline std::string lastMessage;
    static inline int allocations = 0;
    static inline bool isFailing = false;
    static inline bool hasRunOut = false;
};

TEST(SubdivisionMemory, anImportThatRunsOutOfItStopsWithTheModelBeforeTheRound) {
    const TemporaryDirectory directory;
    const std::string file =
        directory.write("a.obj",
                        "v 0 0 0\nv 4 0 0\nv 0 4 0\nv 4 4 1\nvt 0 0\nvt 1 0\nvt 0 1\nvn 0 0 1\n"
                        "g first\nf 1/1/1 2/2/1 3/3/1\ng second third\nf 2/2 4/1 3/3\n");
    const auto importRounds = [&](int rounds) {
        ObjConverter* converter = ObjConverter::getInstance();
        converter->setSubdivisionRounds("ITERATIONS", rounds);
        return converter->importObjDataFromFile(file.c_str());
    };
    ObjConverter::clearInstance();
    ASSERT_EQ(importRounds(1), ObjConverter::CONVERTER_OK);
    const std::string afterFirstRound = printModel(viewOf(*ObjConverter::getInstance()));

    int allocations = 0;
    for (bool isDone = false; !isDone; ++allocations) {
        SCOPED_TRACE(allocations);
        ObjConverter::clearInstance();
        const GreedyHost host("3|Subdivision 2...", allocations);
        const int code = importRounds(2);
        isDone = !host.hasFailed();
        ASSERT_EQ(code, isDone ? ObjConverter::CONVERTER_OK : ObjConverter::CONVERTER_ERROR);
        if (isDone)
            break;
        EXPECT_EQ(host.getLastMessage(), "1|Stopping conversion... bad allocation");
        const ModelView view = viewOf(*ObjConverter::getInstance());
        ASSERT_EQ(firstDifference(afterFirstRound, printModel(view)), "");
        EXPECT_EQ(findViolations(view, ModelState::SUBDIVIDED), "");
    }
    EXPECT_GT(allocations, 8);
    ObjConverter::clearInstance();
}

}  // namespace

}  // namespace obj_adapter::test
