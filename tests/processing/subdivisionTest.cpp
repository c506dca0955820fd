// Loop subdivision: processing/subdivision.cpp and subdivisionRound.cpp.
#include "processing/subdivision.h"

#include "groups/objHierarchy.h"
#include "model/objModel.h"
#include "processing/edgeAdjacency.h"
#include "processing/loopScheme.h"
#include "processing/subdivisionLimits.h"
#include "support/describe.h"
#include "support/generatedMeshes.h"
#include "support/importText.h"
#include "support/messageRecorder.h"
#include "support/modelComparison.h"
#include "support/modelView.h"
#include "support/printedModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace obj_adapter::test {

namespace {

constexpr int ONE_ROUND = 1;

// How often each edge occurs in the faces.
std::map<std::pair<int, int>, int> countEdges(const ObjModel& model) {
    std::map<std::pair<int, int>, int> counts;
    for (const Face& face : model.faces) {
        for (const EdgeCorners& corners : EDGE_CORNERS) {
            const int p = face.elements[corners.first].vertexIndex;
            const int q = face.elements[corners.second].vertexIndex;
            ++counts[{std::min(p, q), std::max(p, q)}];
        }
    }
    return counts;
}

bool isClosed(const ObjModel& model) {
    const auto counts = countEdges(model);
    return std::all_of(counts.begin(), counts.end(),
                       [](const auto& entry) { return entry.second == 2; });
}

// --- one round, drawn out ---------------------------------------------------

TEST(Subdivision, oneTriangleOneRound) {
    ObjModel model;
    fillModel(oneTriangle(), model);
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    const ModelView view = viewOfModel(model);
    EXPECT_EQ(describeVertices(view),
              "(0.5 0.5 0 w1) (3 0.5 0 w1) (0.5 3 0 w1) "
              "(2 0 0 w1) (0 2 0 w1) (2 2 0 w1)");
    EXPECT_EQ(describeFaces(view), "[0 3 4] [3 1 5] [4 5 2] [3 5 4]");
    EXPECT_EQ(describeGroups(view), "mesh: 0 1 2 3");
    EXPECT_EQ(findViolationsAfter(model), "");
}

TEST(Subdivision, closedTetrahedronOneRound) {
    ObjModel model;
    fillModel(tetrahedron(), model);
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    const ModelView view = viewOfModel(model);
    EXPECT_EQ(describeVertices(view),
              "(0.25 0.25 0.25 w1) (0.25 -0.25 -0.25 w1) "
              "(-0.25 0.25 -0.25 w1) (-0.25 -0.25 0.25 w1) "
              "(0.5 0 0 w1) (0 0.5 0 w1) (0 0 -0.5 w1) "
              "(0 0 0.5 w1) (-0.5 0 0 w1) (0 -0.5 0 w1)");
    EXPECT_EQ(describeFaces(view),
              "[0 4 5] [4 1 6] [5 6 2] [4 6 5] "
              "[0 5 7] [5 2 8] [7 8 3] [5 8 7] "
              "[0 7 4] [7 3 9] [4 9 1] [7 9 4] "
              "[1 9 6] [9 3 8] [6 8 2] [9 8 6]");
    EXPECT_TRUE(isClosed(model));
}

TEST(Subdivision, everyFaceCountUpToTwentyKeepsItsOrder) {
    for (int faceCount = 1; faceCount <= 20; ++faceCount) {
        SCOPED_TRACE(faceCount);
        ObjModel model;
        fillModel(fan(faceCount, false), model);
        const FaceTable parents = model.faces;
        subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
        ASSERT_EQ(model.getNumberOfFaces(), 4 * faceCount);
        for (std::size_t face = 0; face < parents.size(); ++face) {
            EXPECT_EQ(model.faces[4 * face].elements[0].vertexIndex,
                      parents[face].elements[0].vertexIndex);
            EXPECT_EQ(model.faces[4 * face + 1].elements[1].vertexIndex,
                      parents[face].elements[1].vertexIndex);
            EXPECT_EQ(model.faces[4 * face + 2].elements[2].vertexIndex,
                      parents[face].elements[2].vertexIndex);
        }
    }
}

TEST(Subdivision, aVertexWithoutFacesGoesToTheOriginAndKeepsItsWeight) {
    ObjModel model;
    fillModel(oneTriangle(), model);
    Vertex unused(7, 8, 9);
    unused.w = 0.5;
    model.addVertex(unused);
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    EXPECT_EQ(describeVertices(viewOfModel(model)),
              "(0.5 0.5 0 w1) (3 0.5 0 w1) (0.5 3 0 w1) (0 0 0 w0.5) "
              "(2 0 0 w1) (0 2 0 w1) (2 2 0 w1)");
    EXPECT_EQ(describeFaces(viewOfModel(model)), "[0 4 5] [4 1 6] [5 6 2] [4 6 5]");
    EXPECT_EQ(findViolationsAfter(model), "");
}

TEST(Subdivision, weightsOfOldVerticesStayAndNewOnesAreOne) {
    ObjModel model;
    fillModel(oneTriangle(), model);
    model.vertices[1].w = 0.25;
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    EXPECT_EQ(describeVertices(viewOfModel(model)),
              "(0.5 0.5 0 w1) (3 0.5 0 w0.25) (0.5 3 0 w1) "
              "(2 0 0 w1) (0 2 0 w1) (2 2 0 w1)");
}

TEST(Subdivision, noFaceHasNormalsAfterwards) {
    ObjModel model;
    fillModel(oneTriangle(), model);
    for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
        NormalPoint normal;
        normal.x = corner;
        normal.y = 0;
        normal.z = 1;
        model.faces[0].elements[corner].normalIndex = model.addNormalPoint(normal);
    }
    ASSERT_TRUE(model.faces[0].hasNormals());
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    // The corners of old vertices keep theirs.
    EXPECT_EQ(describeFaces(viewOfModel(model)), "[0/-/0 3 4] [3 1/-/1 5] [4 5 2/-/2] [3 5 4]");
    EXPECT_EQ(describeNormalPoints(viewOfModel(model)), "(0 0 1) (1 0 1) (2 0 1)");
    for (const Face& face : model.faces)
        EXPECT_FALSE(face.hasNormals());
}

TEST(Subdivision, texturedFacesGetMidpointsEachItsOwn) {
    // Two triangles over the edge 1-2, which lies in the texture twice.
    Mesh mesh = oneTriangle();
    mesh.addPoint(4, 4, 0);
    mesh.triangles.push_back({1, 3, 2});
    ObjModel model;
    fillModel(mesh, model);
    addTexturePoint(model, 0, 0, 0.75);
    addTexturePoint(model, 1, 0);
    addTexturePoint(model, 0, 1);
    addTexturePoint(model, 8, 16);
    for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
        model.faces[0].elements[corner].textureIndex = corner;
        model.faces[1].elements[corner].textureIndex = 3 - corner;
    }
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    const ModelView view = viewOfModel(model);
    EXPECT_EQ(describeTexturePoints(view),
              "(0 0 w0.75) (1 0 w0) (0 1 w0) (8 16 w0) "
              "(0.5 0 w0) (0 0.5 w0) (0.5 0.5 w0) "
              "(4 8.5 w0) (4.5 8 w0) (0.5 0.5 w0)");
    EXPECT_EQ(describeFaces(view),
              "[0/0 4/4 5/5] [4/4 1/1 6/6] [5/5 6/6 2/2] [4/4 6/6 5/5] "
              "[1/3 7/7 6/8] [7/7 3/2 8/9] [6/8 8/9 2/1] [7/7 8/9 6/8]");
    EXPECT_EQ(findViolationsAfter(model), "");
}

TEST(Subdivision, aPartlyTexturedFaceGetsNoMidpoints) {
    ObjModel model;
    fillModel(oneTriangle(), model);
    addTexturePoint(model, 0, 0);
    model.faces[0].elements[0].textureIndex = 0;
    model.faces[0].elements[2].textureIndex = 0;
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    EXPECT_EQ(describeTexturePoints(viewOfModel(model)), "(0 0 w0)");
    EXPECT_EQ(describeFaces(viewOfModel(model)), "[0/0 3 4] [3 1 5] [4 5 2/0] [3 5 4]");
}

// A host wrote into the face; nothing is read outside the table.
TEST(Subdivision, aFaceWithTexturePointsThatAreNotThereGetsNoMidpoints) {
    for (const int textureIndex : {1, -2, 2147483647}) {
        ObjModel model;
        fillModel(oneTriangle(), model);
        addTexturePoint(model, 0, 0);
        for (FaceElement& corner : model.faces[0].elements)
            corner.textureIndex = textureIndex;
        subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
        EXPECT_EQ(describeTexturePoints(viewOfModel(model)), "(0 0 w0)");
        EXPECT_EQ(model.faces.size(), 4U);
    }
}

TEST(Subdivision, aFaceWithAVertexThatIsNotThereStopsTheRound) {
    for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
        for (const int vertexIndex : {3, -1, -5, 2147483647}) {
            ObjModel model;
            fillModel(oneTriangle(), model);
            model.faces[0].elements[corner].vertexIndex = vertexIndex;
            const std::string before = printState(model);
            try {
                subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
                FAIL() << "nothing thrown";
            } catch (const std::out_of_range& failure) {
                EXPECT_STREQ(failure.what(), "Face with a vertex that does not exist");
            }
            EXPECT_EQ(printState(model), before);
        }
    }
}

TEST(Subdivision, childrenKeepMaterialAndGroup) {
    Mesh mesh = oneTriangle();
    mesh.addPoint(4, 4, 0);
    mesh.triangles.push_back({1, 3, 2});
    mesh.addPoint(8, 0, 0);
    mesh.triangles.push_back({1, 4, 3});
    ObjModel model;
    fillModel(mesh, model);
    model.groups.resize(2);
    model.groups[1].name = "empty";
    model.groups.resize(3);
    model.groups[2].names = {"car", "wheel"};
    model.faces[0].materialIndex = 2;
    model.faces[1].groupIndex = 2;
    model.faces[1].materialIndex = 0;
    model.groups[0].faceIndices = {0, 2};
    model.groups[2].faceIndices = {1};
    model.hierarchyValid = true;
    for (const Face& face : model.faces)
        face.refreshSortedKey();
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    EXPECT_EQ(describeGroups(viewOfModel(model)),
              "mesh: 0 1 2 3 8 9 10 11; empty:; car/wheel: 4 5 6 7");
    EXPECT_EQ(describeFaces(viewOfModel(model)),
              "[0 5 6 m2] [5 1 7 m2] [6 7 2 m2] [5 7 6 m2] "
              "[1 8 7 m0] [8 3 9 m0] [7 9 2 m0] [8 9 7 m0] "
              "[1 10 8] [10 4 11] [8 11 3] [10 11 8]");
    EXPECT_FALSE(model.hierarchyValid);
    for (const Face& face : model.faces)
        EXPECT_FALSE(face.sortedKeyValid);
    EXPECT_EQ(findViolationsAfter(model), "");
}

TEST(Subdivision, anEdgeOfThreeFacesUsesTheFirstTwo) {
    // Pages on the spine 0-1; their outer corners tell them apart.
    const Mesh pages = {{{0, 0, 0}, {0, 0, 8}, {8, 0, 0}, {0, 16, 0}, {-64, 0, 0}},
                        {{0, 1, 2}, {1, 0, 3}, {0, 1, 4}}};
    ObjModel model;
    fillModel(pages, model);
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    // (2 + 3) / 8 + 3 (0 + 1) / 8
    EXPECT_EQ(model.vertices[5].x, 1);
    EXPECT_EQ(model.vertices[5].y, 2);
    EXPECT_EQ(model.vertices[5].z, 3);
    // 0 has four edges: the spine, and the others on the boundary, of which 2
    // and 3 come first.
    EXPECT_EQ(model.vertices[0].x, 1);
    EXPECT_EQ(model.vertices[0].y, 2);
    EXPECT_EQ(model.vertices[0].z, 0);
}

TEST(Subdivision, aSingleBoundaryEdgeCountsTwice) {
    // At 0 the edge to 1 has one face, that to 2 three, those to 3 and 4 two.
    const Mesh mesh = {{{4, 0, 0}, {8, 8, 0}, {0, 1, 2}, {3, 4, 5}, {6, 7, 8}},
                       {{0, 1, 2}, {0, 2, 3}, {0, 2, 4}, {0, 3, 4}}};
    ObjModel model;
    fillModel(mesh, model);
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    EXPECT_EQ(model.vertices[0].x, 5);
    EXPECT_EQ(model.vertices[0].y, 2);
    EXPECT_EQ(model.vertices[0].z, 0);
}

TEST(Subdivision, theSumOfNeighboursStartsAtZero) {
    ObjModel model;
    Mesh mesh = octahedron();
    for (auto& point : mesh.points)
        point = {-0.0, -0.0, -0.0};
    fillModel(mesh, model);
    subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
    EXPECT_FALSE(std::signbit(model.vertices[0].x));  // -0 of itself and +0 of the sum
    EXPECT_TRUE(std::signbit(model.vertices[6].x));   // an edge has four parts, all -0
}

// --- weights and limits -----------------------------------------------------

TEST(LoopScheme, betaOfFewNeighboursIsThreeSixteenths) {
    EXPECT_EQ(loopBeta(0), 0.1875);
    EXPECT_EQ(loopBeta(1), 0.1875);
    EXPECT_EQ(loopBeta(2), 0.1875);
    EXPECT_EQ(loopBeta(3), 0.1875);
}

TEST(LoopScheme, betaOfMoreNeighboursFollowsTheCosine) {
    EXPECT_NEAR(loopBeta(4), (0.625 - 0.375 * 0.375) / 4, 1e-15);
    EXPECT_NEAR(loopBeta(6), 0.0625, 1e-15);
    EXPECT_NEAR(loopBeta(12), (0.625 - std::pow(0.375 + std::sqrt(3.0) / 8, 2)) / 12, 1e-15);
    EXPECT_GT(loopBeta(1000000), 0);
}

TEST(SubdivisionLimits, productsWrapAroundInThirtyTwoBits) {
    EXPECT_EQ(nextFaceCount(0), 0);
    EXPECT_EQ(nextFaceCount(1), 4);
    EXPECT_EQ(nextFaceCount(536870911), 2147483644);
    EXPECT_EQ(nextFaceCount(536870912), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(nextFaceCount(1073741823), -4);
    EXPECT_EQ(nextFaceCount(1073741824), 0);
    EXPECT_EQ(nextFaceCount(2147483647), -4);
    EXPECT_EQ(nextVertexEstimate(3), 6);
    EXPECT_EQ(nextVertexEstimate(1073741823), 2147483646);
    EXPECT_EQ(nextVertexEstimate(1073741824), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(nextVertexEstimate(2147483647), -2);
}

TEST(SubdivisionLimits, tablesThatAnIntCannotCountAreRefused) {
    EXPECT_NO_THROW(requireIndexable(0));
    EXPECT_NO_THROW(requireIndexable(2147483647));
    EXPECT_NO_THROW(requireIndexable(std::size_t(4) * 536870911));
    try {
        requireIndexable(std::size_t(4) * 536870912);
        ADD_FAILURE() << "not refused";
    } catch (const std::length_error& failure) {
        EXPECT_STREQ(failure.what(), "Too many records for 32-bit indices");
    }
}

struct LimitCase {
    const char* title;
    int limitType;
    int limit;
    const char* messages;
    int faces;  // of one triangle
    int vertices;
};

const LimitCase LIMIT_CASES[] = {
    {"no iteration", LIMIT_ITERATIONS, 0, "", 1, 3},
    {"fewer than no iteration", LIMIT_ITERATIONS, -1, "", 1, 3},
    {"least number of iterations", LIMIT_ITERATIONS, std::numeric_limits<int>::min(), "", 1, 3},
    {"one iteration", LIMIT_ITERATIONS, 1, "3|Subdivision 1...\n", 4, 6},
    {"three iterations", LIMIT_ITERATIONS, 3,
     "3|Subdivision 1...\n3|Subdivision 2...\n3|Subdivision 3...\n", 64, 45},
    {"face count 10 of one triangle", LIMIT_FACE_COUNT, 10, "3|Subdividing to 4 faces...\n", 4, 6},
    {"face count equal to the next", LIMIT_FACE_COUNT, 4, "", 1, 3},
    {"face count one above the next", LIMIT_FACE_COUNT, 5, "3|Subdividing to 4 faces...\n", 4, 6},
    {"face count for two rounds", LIMIT_FACE_COUNT, 17,
     "3|Subdividing to 4 faces...\n3|Subdividing to 16 faces...\n", 16, 15},
    {"face count below zero", LIMIT_FACE_COUNT, -5, "", 1, 3},
    {"vertex count 7 of one triangle", LIMIT_VERTEX_COUNT, 7,
     "3|Subdividing to up to 6 vertices...\n", 4, 6},
    {"vertex count equal to the next", LIMIT_VERTEX_COUNT, 6, "", 1, 3},
    {"vertex count for two rounds", LIMIT_VERTEX_COUNT, 30,
     "3|Subdividing to up to 6 vertices...\n3|Subdividing to up to 12 vertices...\n", 16, 15},
    {"vertex count below zero", LIMIT_VERTEX_COUNT, -5, "", 1, 3},
    {"unknown limit type 3", 3, 100, "", 1, 3},
    {"unknown limit type -1", -1, 100, "", 1, 3},
};

TEST(SubdivisionLimits, roundsAndMessages) {
    for (const LimitCase& row : LIMIT_CASES) {
        SCOPED_TRACE(row.title);
        ObjModel model;
        fillModel(oneTriangle(), model);
        MessageRecorder recorder;
        subdivide(row.limitType, row.limit, model);
        EXPECT_EQ(recorder.getText(), row.messages);
        EXPECT_EQ(model.getNumberOfFaces(), row.faces);
        EXPECT_EQ(model.getNumberOfVertices(), row.vertices);
    }
}

TEST(SubdivisionLimits, withoutFacesTheCountLimitsRunNoRound) {
    for (const int limitType : {LIMIT_FACE_COUNT, LIMIT_VERTEX_COUNT}) {
        SCOPED_TRACE(limitType);
        ObjModel model;
        fillModel({{{1, 2, 3}}, {}}, model);
        MessageRecorder recorder;
        subdivide(limitType, 1000, model);
        EXPECT_EQ(recorder.getText(), "");
        EXPECT_EQ(describeVertices(viewOfModel(model)), "(1 2 3 w1)");
    }
}

TEST(SubdivisionLimits, withoutFacesIterationsRunAndVerticesGoToTheOrigin) {
    ObjModel model;
    fillModel({{{1, 2, 3}}, {}}, model);
    MessageRecorder recorder;
    subdivide(LIMIT_ITERATIONS, 2, model);
    EXPECT_EQ(recorder.getText(), "3|Subdivision 1...\n3|Subdivision 2...\n");
    EXPECT_EQ(describeVertices(viewOfModel(model)), "(0 0 0 w1)");
    EXPECT_EQ(describeGroups(viewOfModel(model)), "mesh:");
}

TEST(SubdivisionLimits, anEmptyModelStaysEmpty) {
    ObjModel model;
    model.hasConflictingFaces = false;
    MessageRecorder recorder;
    subdivide(LIMIT_ITERATIONS, 1, model);
    EXPECT_EQ(recorder.getText(), "3|Subdivision 1...\n");
    EXPECT_EQ(printModel(viewOfModel(model)), "");
}

TEST(Subdivision, conflictingFacesAreRefused) {
    for (const int limitType : {LIMIT_ITERATIONS, LIMIT_FACE_COUNT, LIMIT_VERTEX_COUNT}) {
        SCOPED_TRACE(limitType);
        ObjModel model;
        fillModel(tetrahedron(), model);
        model.hasConflictingFaces = true;
        model.hierarchyValid = true;
        const std::string before = printState(model);
        MessageRecorder recorder;
        subdivide(limitType, 1000, model);
        EXPECT_EQ(recorder.getText(),
                  "1|The data contains at least one pair of faces that have the same vertex "
                  "coordinates. Subdivision cannot be used.\n");
        EXPECT_EQ(printState(model), before);
    }
}

TEST(Subdivision, aNewModelIsRefused) {
    ObjModel model;
    MessageRecorder recorder;
    subdivide(LIMIT_ITERATIONS, 1, model);
    EXPECT_EQ(recorder.getMessages().size(), 1U);
}

// --- properties -------------------------------------------------------------

TEST(Subdivision, closedMeshesStayClosedAndGrowAsTheyShould) {
    for (int seed = 0; seed < 30; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(static_cast<std::uint64_t>(seed));
        const Mesh shapes[] = {tetrahedron(), octahedron(), icosahedron(),
                               roughTorus(random.between(3, 9), random.between(3, 9), random)};
        for (const Mesh& shape : shapes) {
            ObjModel model;
            fillModel(shuffled(shape, random), model);
            for (int round = 0; round < 3; ++round) {
                const std::size_t vertexCount = model.vertices.size();
                const std::size_t edgeCount = countEdges(model).size();
                const std::size_t faceCount = model.faces.size();
                ASSERT_TRUE(isClosed(model));
                subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
                EXPECT_EQ(model.vertices.size(), vertexCount + edgeCount);
                EXPECT_EQ(model.faces.size(), 4 * faceCount);
            }
            EXPECT_TRUE(isClosed(model));
        }
    }
}

TEST(Subdivision, boundariesStayBoundaries) {
    RandomSource random(4);
    ObjModel model;
    fillModel(roughGrid(5, 4, random), model);
    const auto countBoundary = [&] {
        const auto counts = countEdges(model);
        return std::count_if(counts.begin(), counts.end(),
                             [](const auto& entry) { return entry.second == 1; });
    };
    EXPECT_EQ(countBoundary(), 18);
    subdivide(LIMIT_ITERATIONS, 2, model);
    EXPECT_EQ(countBoundary(), 72);
}

// --- as a host sees it ------------------------------------------------------

TEST(Subdivision, anImportedTriangleIsCompactedAndSubdivided) {
    ImportOptions options;
    options.limitType = "FACE_COUNT";
    options.rounds = 10;
    options.compaction = true;
    const ImportResult result = importText("v 0 0 0\nv 4 0 0\nv 0 4 0\nf 1 2 3\n", options);
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(describeFaces(result.model), "[0 3 4] [3 2 5] [4 5 1] [3 5 4]");
    EXPECT_NE(result.allMessages.find("3|Subdividing...\n3|Subdividing to 4 faces...\n"
                                      "3|Done Subdividing.\n"),
              std::string::npos)
        << result.allMessages;
}

TEST(Subdivision, oppositeFacesOfAFileAreRefused) {
    ImportOptions options;
    options.limitType = "ITERATIONS";
    options.rounds = 1;
    options.compaction = true;
    const ImportResult result =
        importText("v 0 0 0\nv 4 0 0\nv 0 4 0\nf 1 2 3\nf 1 3 2\n", options);
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.model.faces.size(), 2U);
    EXPECT_NE(result.allMessages.find(
                  "1|The data contains at least one pair of faces that have the same vertex "
                  "coordinates. Subdivision cannot be used.\n3|Done Subdividing.\n"),
              std::string::npos)
        << result.allMessages;
}

}  // namespace

}  // namespace obj_adapter::test
