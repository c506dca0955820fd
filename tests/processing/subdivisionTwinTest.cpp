// Loop subdivision beside its plain wording: every bit the same.
#include "model/objModel.h"
#include "processing/subdivision.h"
#include "support/generatedMeshes.h"
#include "support/modelComparison.h"
#include "support/slowSubdivision.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

constexpr int ONE_ROUND = 1;

// Runs the rounds in the library and in the slow twin.
void expectSameAsTwin(ObjModel& model, int rounds) {
    ObjModel twin;
    copyTables(model, twin);
    subdivide(LIMIT_ITERATIONS, rounds, model);
    for (int round = 0; round < rounds; ++round)
        subdivideOnceSlowly(twin);
    EXPECT_TRUE(sameState(twin, model)) << firstDifference(printState(twin), printState(model));
}

// How often each edge occurs in the faces.

TEST(SubdivisionTwin, theComparisonSeesEveryField) {
    const std::vector<void (*)(ObjModel&)> changes = {
        [](ObjModel& model) { model.vertices[1].y = -0.0; },
        [](ObjModel& model) { model.vertices[1].w = 2; },
        [](ObjModel& model) { model.vertices[2].index = 0; },
        [](ObjModel& model) { model.vertices.pop_back(); },
        [](ObjModel& model) { model.faces[0].elements[2].textureIndex = 0; },
        [](ObjModel& model) { model.faces[0].elements[1].normalIndex = 0; },
        [](ObjModel& model) { model.faces[0].materialIndex = 0; },
        [](ObjModel& model) { model.faces[0].groupIndex = 1; },
        [](ObjModel& model) { model.texturePoints[0].w = 1; },
        [](ObjModel& model) { model.groups[0].faceIndices.clear(); },
        [](ObjModel& model) { model.hierarchyValid = true; },
    };
    for (const auto change : changes) {
        ObjModel model;
        fillModel(oneTriangle(), model);
        addTexturePoint(model, 0, 0);
        ObjModel other;
        copyTables(model, other);
        EXPECT_TRUE(sameState(model, other));
        change(other);
        EXPECT_FALSE(sameState(model, other));
    }
}

TEST(SubdivisionTwin, generatedMeshesComeOutBitForBit) {
    constexpr int MESHES = 3000;
    for (int seed = 0; seed < MESHES; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(static_cast<std::uint64_t>(seed));
        Mesh mesh = randomMesh(random);
        if (random.oneIn(2))
            mesh = shuffled(mesh, random);
        ObjModel model;
        fillModel(mesh, model);
        decorateFaces(model, random);
        const int rounds = random.oneIn(8) ? 3 : random.between(1, 2);
        expectSameAsTwin(model, rounds);
        if (seed % 10 == 0) {
            EXPECT_EQ(findViolationsAfter(model), "");
        }
        if (HasFailure())
            return;
    }
}

TEST(SubdivisionTwin, coordinatesThatAreNoNumbersComeOutTheSame) {
    const double oddities[] = {
        std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(), -0.0,
        std::numeric_limits<double>::max(),       std::numeric_limits<double>::denorm_min()};
    for (int seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(static_cast<std::uint64_t>(seed));
        Mesh mesh = randomMesh(random);
        for (auto& point : mesh.points)
            point[static_cast<std::size_t>(random.below(3))] =
                oddities[static_cast<std::size_t>(random.below(6))];
        ObjModel model;
        fillModel(mesh, model);
        expectSameAsTwin(model, 1);
    }
}

TEST(SubdivisionTwin, facesThatRepeatAVertexAreSafe) {
    // Compaction removes them; nothing here may depend on that.
    for (int seed = 0; seed < 300; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(static_cast<std::uint64_t>(seed));
        Mesh mesh = randomTriangles(random);
        const int pointCount = static_cast<int>(mesh.points.size());
        for (int i = 0; i < 5; ++i) {
            std::array<int, 3> triangle = {};
            for (int& corner : triangle)
                corner = random.below(random.oneIn(4) ? 1 : pointCount);
            triangle[static_cast<std::size_t>(random.below(3))] = triangle[0];
            triangle[static_cast<std::size_t>(random.below(3))] = triangle[1];
            mesh.triangles.push_back(triangle);
        }
        shuffle(mesh.triangles, random);
        ObjModel model;
        fillModel(mesh, model);
        expectSameAsTwin(model, 2);
    }
}

TEST(SubdivisionTwin, aFanOfFiftyThousandFacesInAnyOrder) {
    constexpr int TRIANGLES = 50000;
    RandomSource random(1);
    for (const bool isShuffled : {false, true}) {
        SCOPED_TRACE(isShuffled);
        Mesh mesh = fan(TRIANGLES, true);
        if (isShuffled)
            shuffle(mesh.triangles, random);
        ObjModel model;
        fillModel(mesh, model);
        expectSameAsTwin(model, 1);
        EXPECT_EQ(model.getNumberOfFaces(), 4 * TRIANGLES);
        EXPECT_EQ(model.getNumberOfVertices(), 3 * TRIANGLES + 1);
    }
}

TEST(SubdivisionTwin, manyHubsAtOnce) {
    // Each of 40 points is joined to each of 400 others, in no order.
    constexpr int HUBS = 40;
    constexpr int OTHERS = 400;
    RandomSource random(2);
    Mesh mesh;
    for (int point = 0; point < HUBS + OTHERS; ++point)
        mesh.addPoint(random.fraction(), random.fraction(), random.fraction());
    for (int hub = 0; hub < HUBS; ++hub) {
        for (int other = 0; other < OTHERS; ++other)
            mesh.triangles.push_back({hub, HUBS + other, HUBS + (other * 7 + 1) % OTHERS});
    }
    mesh.triangles.erase(
        std::remove_if(mesh.triangles.begin(), mesh.triangles.end(),
                       [](const auto& corners) { return corners[1] == corners[2]; }),
        mesh.triangles.end());
    shuffle(mesh.triangles, random);
    ObjModel model;
    fillModel(mesh, model);
    expectSameAsTwin(model, 1);
}

TEST(Subdivision, aHubOfFourHundredThousandFacesTakesNoMinutes) {
    // Searching the hub's edges one after the other would take 10^11 steps.
    constexpr int TRIANGLES = 400000;
    RandomSource random(3);
    Mesh mesh = fan(TRIANGLES, true);
    shuffle(mesh.triangles, random);
    ObjModel model;
    fillModel(mesh, model);
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    EXPECT_EQ(model.getNumberOfFaces(), 4 * TRIANGLES);
    EXPECT_EQ(model.getNumberOfVertices(), 3 * TRIANGLES + 1);
}

}  // namespace

}  // namespace obj_adapter::test
