// Loop subdivision: processing/subdivision.cpp and edgeAdjacency.cpp.
#include "processing/subdivision.h"

#include "groups/objHierarchy.h"
#include "model/objModel.h"
#include "processing/edgeAdjacency.h"
#include "processing/loopScheme.h"
#include "processing/subdivisionLimits.h"
#include "support/countedMemory.h"
#include "support/describe.h"
#include "support/importText.h"
#include "support/messageRecorder.h"
#include "support/modelChecker.h"
#include "support/modelView.h"
#include "support/printedModel.h"
#include "support/randomSource.h"
#include "support/slowSubdivision.h"
#include "support/temporaryDirectory.h"
#include "support/testMeshes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace obj_adapter::test {

namespace {

constexpr int ONE_ROUND = 1;

void copyTables(const ObjModel& from, ObjModel& to) {
    to.groups = from.groups;
    to.faces = from.faces;
    to.vertices = from.vertices;
    to.texturePoints = from.texturePoints;
    to.normalPoints = from.normalPoints;
    to.hasConflictingFaces = from.hasConflictingFaces;
}

// Everything of a model that a round may change.
std::string printState(ObjModel& model) {
    return printModel(viewOfModel(model)) + (model.hasConflictingFaces ? "conflict " : "") +
           (model.hierarchyValid ? "hierarchy valid" : "");
}

std::string findViolationsAfter(ObjModel& model) {
    std::vector<Material> materials(3);
    ModelView view = viewOfModel(model);
    view.materials = materials;
    return findViolations(view, ModelState::SUBDIVIDED);
}

// Empty when equal; the first line that differs, which a whole mesh would hide.
std::string firstDifference(const std::string& expected, const std::string& actual) {
    if (expected == actual)
        return "";
    std::size_t at = 0;
    while (at < expected.size() && at < actual.size() && expected[at] == actual[at])
        ++at;
    const auto lineAround = [at](const std::string& text) {
        if (at >= text.size())
            return std::string("(end)");
        const std::size_t before = at == 0 ? std::string::npos : text.rfind('\n', at - 1);
        const std::size_t begin = before == std::string::npos ? 0 : before + 1;
        return text.substr(begin, text.find('\n', at) - begin);
    };
    return "expected " + lineAround(expected) + "\ngot      " + lineAround(actual);
}

bool sameBits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) ||
           (std::isnan(a) && std::isnan(b));
}

bool sameVertex(const Vertex& a, const Vertex& b) {
    return sameBits(a.x, b.x) && sameBits(a.y, b.y) && sameBits(a.z, b.z) && sameBits(a.w, b.w) &&
           a.index == b.index;
}

bool sameTexturePoint(const TexturePoint& a, const TexturePoint& b) {
    return sameBits(a.u, b.u) && sameBits(a.v, b.v) && sameBits(a.w, b.w) && a.index == b.index;
}

bool sameFace(const Face& a, const Face& b) {
    for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
        const FaceElement& ofA = a.elements[corner];
        const FaceElement& ofB = b.elements[corner];
        if (ofA.vertexIndex != ofB.vertexIndex || ofA.textureIndex != ofB.textureIndex ||
            ofA.normalIndex != ofB.normalIndex)
            return false;
    }
    return a.materialIndex == b.materialIndex && a.groupIndex == b.groupIndex;
}

// The same answer as comparing what printState gives, at once for large meshes.
bool sameState(const ObjModel& a, const ObjModel& b) {
    const auto same = [](const auto& ofA, const auto& ofB, auto compare) {
        return std::equal(ofA.begin(), ofA.end(), ofB.begin(), ofB.end(), compare);
    };
    return same(a.vertices, b.vertices, sameVertex) &&
           same(a.texturePoints, b.texturePoints, sameTexturePoint) &&
           same(a.normalPoints, b.normalPoints,
                [](const NormalPoint& ofA, const NormalPoint& ofB) {
                    return sameBits(ofA.x, ofB.x) && sameBits(ofA.y, ofB.y) &&
                           sameBits(ofA.z, ofB.z) && ofA.index == ofB.index;
                }) &&
           same(a.faces, b.faces, sameFace) &&
           same(a.groups, b.groups,
                [](const Group& ofA, const Group& ofB) {
                    return ofA.name == ofB.name && ofA.names == ofB.names &&
                           ofA.faceIndices == ofB.faceIndices;
                }) &&
           a.hasConflictingFaces == b.hasConflictingFaces && a.hierarchyValid == b.hierarchyValid;
}

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

int addTexturePoint(ObjModel& model, double u, double v, double w = 0) {
    TexturePoint point;
    point.u = u;
    point.v = v;
    point.w = w;
    return model.addTexturePoint(point);
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
    for (const int vertexIndex : {3, -1, -5, 2147483647}) {
        ObjModel model;
        fillModel(oneTriangle(), model);
        model.faces[0].elements[1].vertexIndex = vertexIndex;
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

// --- against the twin -------------------------------------------------------

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

void decorateFaces(ObjModel& model, RandomSource& random) {
    const int groupCount = random.between(1, 4);
    model.groups.clear();
    for (int group = 0; group < groupCount; ++group)
        model.groups.emplace_back().name = "g" + std::to_string(group);
    const int textureCount = random.below(6);
    for (int point = 0; point < textureCount; ++point)
        addTexturePoint(model, random.fraction(), random.fraction(), random.below(2));
    NormalPoint normal;
    normal.x = normal.y = normal.z = 1;
    model.addNormalPoint(normal);
    for (std::size_t face = 0; face < model.faces.size(); ++face) {
        Face& record = model.faces[face];
        record.groupIndex = random.below(groupCount);
        record.materialIndex = random.between(NO_INDEX, 2);
        model.groups[static_cast<std::size_t>(record.groupIndex)].faceIndices.push_back(
            static_cast<int>(face));
        const bool isPartly = random.oneIn(4);
        for (FaceElement& corner : record.elements) {
            if (textureCount > 0 && !(isPartly && random.oneIn(2)))
                corner.textureIndex = random.below(textureCount);
            if (random.oneIn(3))
                corner.normalIndex = 0;
        }
        if (random.oneIn(2))
            record.refreshSortedKey();
    }
}

// Any triangles over few points: edges of many faces, bow ties, loose points.
Mesh randomTriangles(RandomSource& random) {
    Mesh mesh;
    const int pointCount = random.between(3, 14);
    for (int point = 0; point < pointCount; ++point)
        mesh.addPoint(random.fraction(), random.between(-3, 3), random.fraction() - 0.5);
    const int triangleCount = random.between(1, 40);
    for (int triangle = 0; triangle < triangleCount; ++triangle) {
        const int a = random.below(pointCount);
        const int b = (a + random.between(1, pointCount - 1)) % pointCount;
        const int c = random.below(pointCount);
        if (c != a && c != b)
            mesh.triangles.push_back({a, b, c});
    }
    return mesh;
}

// The same with some triangles taken away at random.
Mesh withHoles(Mesh mesh, RandomSource& random) {
    std::vector<std::array<int, 3>> left;
    for (const auto& triangle : mesh.triangles) {
        if (!random.oneIn(5))
            left.push_back(triangle);
    }
    mesh.triangles = left;
    return mesh;
}

// Two fans that touch in point 0 only.
Mesh bowTie(int triangles) {
    Mesh mesh = fan(triangles, false);
    const int offset = static_cast<int>(mesh.points.size()) - 1;
    const Mesh other = fan(triangles, true);
    for (std::size_t point = 1; point < other.points.size(); ++point)
        mesh.addPoint(other.points[point][0], other.points[point][1], 2);
    for (const auto& [a, b, c] : other.triangles)
        mesh.triangles.push_back({a, b + offset, c + offset});
    return mesh;
}

Mesh randomMesh(RandomSource& random) {
    switch (random.below(9)) {
        case 0:
            return roughGrid(random.between(1, 6), random.between(1, 6), random);
        case 1:
            return roughTorus(random.between(3, 7), random.between(3, 7), random);
        case 2:
            return withHoles(roughTorus(6, 5, random), random);
        case 3:
            return withHoles(roughGrid(6, 6, random), random);
        case 4:
            return fan(random.between(3, 80), random.oneIn(2));
        case 5:
            return bowTie(random.between(3, 6));
        case 6:
            return icosahedron();
        default:
            return randomTriangles(random);
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

// --- exhausted memory and throwing hosts ------------------------------------

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
    expectAllOrNothing(model, 14);
}

TEST(SubdivisionMemory, aRoundWithAHubIsDoneWholeOrNotAtAll) {
    RandomSource random(6);
    Mesh mesh = fan(200, true);
    shuffle(mesh.triangles, random);
    ObjModel model;
    fillModel(mesh, model);
    expectAllOrNothing(model, 18);
}

TEST(SubdivisionMemory, aFailingSecondRoundLeavesTheFirst) {
    RandomSource random(7);
    const Mesh mesh = roughGrid(3, 3, random);
    ObjModel oneRound;
    fillModel(mesh, oneRound);
    subdivide(LIMIT_ITERATIONS, 1, oneRound);

    ObjModel before;
    fillModel(mesh, before);
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

TEST(SubdivisionMemory, aRoundNeedsAtMostNinetySixBytesForEachNewFace) {
    // All that is in use at the worst moment, the old and the new model included.
    constexpr std::size_t MOST_BYTES_PER_FACE = 96;
    RandomSource random(8);
    for (const Mesh& mesh : {roughGrid(150, 150, random), roughTorus(150, 150, random)}) {
        const std::size_t bytesBefore = getBytesInUse();
        ObjModel model;
        fillModel(mesh, model);
        for (int round = 0; round < 2; ++round) {
            model.faces.shrink_to_fit();
            model.vertices.shrink_to_fit();
            model.groups[0].faceIndices.shrink_to_fit();
            watchBytesInUse();
            subdivide(LIMIT_ITERATIONS, ONE_ROUND, model);
            EXPECT_LE(getMostBytesInUse() - bytesBefore, MOST_BYTES_PER_FACE * model.faces.size());
        }
    }
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

// --- as a host sees it ------------------------------------------------------

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
    EXPECT_GT(allocations, 10);
    ObjConverter::clearInstance();
}

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
