// The ways to find a mesh's edges: processing/edgeWalk.h. Each beside a map of all
// edges, and what a host can do to the faces between two rounds.
#include "processing/compaction.h"
#include "processing/edgeWalk.h"
#include "processing/faceSurvey.h"
#include "processing/subdivision.h"
#include "processing/subdivisionRound.h"
#include "support/generatedMeshes.h"
#include "support/modelComparison.h"
#include "support/slowSubdivision.h"

#include <obj_adapter/objConverter.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace obj_adapter::test {

namespace {

// --- the plain wording ------------------------------------------------------

struct PlainAdjacency {
    std::vector<FaceEdges> edgesOfFaces;
    std::vector<std::int32_t> secondOpposites;
};

PlainAdjacency findEdgesPlainly(const ObjModel& model) {
    PlainAdjacency adjacency;
    std::map<std::pair<int, int>, std::int32_t> numbers;
    for (const Face& face : model.faces) {
        FaceEdges edges = {};
        for (std::size_t side = 0; side < EDGES_PER_FACE; ++side) {
            const int p = face.elements[EDGE_CORNERS[side].first].vertexIndex;
            const int q = face.elements[EDGE_CORNERS[side].second].vertexIndex;
            const auto next = static_cast<std::int32_t>(numbers.size());
            const auto [entry, isNew] = numbers.insert({{std::min(p, q), std::max(p, q)}, next});
            edges[side] = entry->second;
            if (isNew) {
                adjacency.secondOpposites.push_back(NO_INDEX);
                continue;
            }
            std::int32_t& opposite =
                adjacency.secondOpposites[static_cast<std::size_t>(edges[side])];
            if (opposite == NO_INDEX)
                opposite = face.elements[EDGE_CORNERS[side].opposite].vertexIndex;
        }
        adjacency.edgesOfFaces.push_back(edges);
    }
    return adjacency;
}

// Whether every face has three edges and no two faces have two in common.
bool edgesTellFacesApart(const PlainAdjacency& adjacency) {
    std::set<std::pair<std::int32_t, std::int32_t>> pairs;
    for (FaceEdges edges : adjacency.edgesOfFaces) {
        std::sort(edges.begin(), edges.end());
        for (const auto& [first, second] :
             {std::pair(edges[0], edges[1]), std::pair(edges[0], edges[2]),
              std::pair(edges[1], edges[2])}) {
            if (first == second || !pairs.insert({first, second}).second)
                return false;
        }
    }
    return true;
}

// A survey's answers, counted plainly.
void expectSurveyed(const FaceSurvey& survey, const ObjModel& model) {
    std::size_t texturedCount = 0;
    std::vector<std::size_t> groupFaceCounts(model.groups.size());
    for (const Face& face : model.faces) {
        texturedCount += face.hasTextures() ? 1 : 0;
        if (face.groupIndex >= 0 && face.groupIndex < model.getNumberOfGroups())
            ++groupFaceCounts[static_cast<std::size_t>(face.groupIndex)];
    }
    EXPECT_EQ(survey.getNumberOfTexturedFaces(), texturedCount);
    EXPECT_EQ(survey.getGroupFaceCounts(), groupFaceCounts);
}

void expectPlainResult(const EdgeAdjacency& adjacency, const FaceSurvey& survey,
                       const ObjModel& model) {
    const PlainAdjacency plain = findEdgesPlainly(model);
    EXPECT_TRUE(std::equal(adjacency.edgesOfFaces.begin(), adjacency.edgesOfFaces.end(),
                           plain.edgesOfFaces.begin(), plain.edgesOfFaces.end()));
    EXPECT_TRUE(std::equal(adjacency.secondOpposites.begin(), adjacency.secondOpposites.end(),
                           plain.secondOpposites.begin(), plain.secondOpposites.end()));
    if (adjacency.edgesTellFacesApart) {
        EXPECT_TRUE(edgesTellFacesApart(plain));
    }
    expectSurveyed(survey, model);
}

// Each triangle's vertices once only, so that compaction finds no conflict.
Mesh withoutRepeatedTriangles(const Mesh& mesh) {
    Mesh result;
    result.points = mesh.points;
    std::set<std::array<int, 3>> known;
    for (const std::array<int, 3>& triangle : mesh.triangles) {
        std::array<int, 3> sorted = triangle;
        std::sort(sorted.begin(), sorted.end());
        if (known.insert(sorted).second)
            result.triangles.push_back(triangle);
    }
    return result;
}

// As an import leaves it before the first round.
void fillCompacted(const Mesh& mesh, ObjModel& model, RandomSource& random) {
    fillModel(withoutRepeatedTriangles(mesh), model);
    decorateFaces(model, random);
    compactData(model);
    // Points that fell together may have brought one about.
    model.hasConflictingFaces = false;
}

bool isAscending(const ObjModel& model) {
    AscendingOrder order;
    return std::all_of(model.faces.begin(), model.faces.end(),
                       [&](const Face& face) { return order.admits(sortCorners(face)); });
}

// --- the searches -----------------------------------------------------------

TEST(EdgeAdjacency, filingFindsTheEdgesOfAnyFaces) {
    for (int seed = 0; seed < 1000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(static_cast<std::uint64_t>(seed));
        ObjModel model;
        fillModel(randomMesh(random), model);
        decorateFaces(model, random);
        FaceSurvey survey(model);
        const EdgeAdjacency adjacency = findEdgesByFiling(model, survey);
        expectPlainResult(adjacency, survey, model);
        EXPECT_EQ(adjacency.edgesTellFacesApart, isAscending(model));
        if (HasFailure())
            return;
    }
}

TEST(EdgeAdjacency, groupsFindTheEdgesOfCompactedFaces) {
    for (int seed = 0; seed < 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(static_cast<std::uint64_t>(seed));
        ObjModel model;
        fillCompacted(randomMesh(random), model, random);
        FaceSurvey survey(model);
        const std::optional<EdgeAdjacency> adjacency = findEdgesByGroups(model, survey);
        ASSERT_EQ(adjacency.has_value(), isAscending(model));
        if (adjacency) {
            EXPECT_TRUE(adjacency->edgesTellFacesApart);
            expectPlainResult(*adjacency, survey, model);
        }
        if (HasFailure())
            return;
    }
}

struct OrderCase {
    const char* title;
    std::vector<std::array<int, 3>> triangles;
    bool isAdmitted;
};

TEST(EdgeAdjacency, groupsTakeOnlyStrictlyAscendingFaces) {
    const OrderCase cases[] = {
        {"no face", {}, true},
        {"corners in any order", {{2, 0, 1}, {3, 1, 0}, {2, 3, 0}, {1, 3, 2}}, true},
        {"lowest corner falls", {{1, 2, 3}, {0, 1, 2}}, false},
        {"middle corner falls", {{0, 2, 3}, {0, 1, 3}}, false},
        {"highest corner falls", {{0, 1, 3}, {0, 1, 2}}, false},
        {"same face twice", {{0, 1, 2}, {0, 1, 2}}, false},
        {"same face turned over", {{0, 1, 2}, {0, 2, 1}}, false},
        {"lowest corner twice", {{0, 0, 2}}, false},
        {"highest corner twice", {{0, 2, 2}}, false},
        {"only the last face out of order", {{0, 1, 2}, {0, 1, 3}, {0, 2, 3}, {0, 1, 4}}, false},
    };
    for (const OrderCase& row : cases) {
        SCOPED_TRACE(row.title);
        ObjModel model;
        fillModel({std::vector<std::array<double, 3>>(5), row.triangles}, model);
        FaceSurvey survey(model);
        EXPECT_EQ(findEdgesByGroups(model, survey).has_value(), row.isAdmitted);
        const EdgeAdjacency adjacency = buildAdjacency(model, ParentEdges(), survey);
        EXPECT_EQ(adjacency.edgesTellFacesApart, row.isAdmitted);
        expectPlainResult(adjacency, survey, model);
    }
}

// Each triangle joins a low point, one of few hubs and a high point.
Mesh hubsInTheMiddle(int hubs, int others) {
    Mesh mesh;
    mesh.points.resize(static_cast<std::size_t>(hubs + 2 * others));
    for (int low = 0; low < others; ++low) {
        for (int hub = 0; hub < hubs; ++hub)
            mesh.triangles.push_back({low, others + hub, others + hubs + (low * 7 + hub) % others});
    }
    return mesh;
}

TEST(EdgeAdjacency, hubsInTheMiddleAreLeftToFiling) {
    ObjModel model;
    fillModel(hubsInTheMiddle(5, 400), model);
    ASSERT_TRUE(isAscending(model));
    FaceSurvey survey(model);
    EXPECT_FALSE(findEdgesByGroups(model, survey).has_value());
    const EdgeAdjacency adjacency = buildAdjacency(model, ParentEdges(), survey);
    EXPECT_TRUE(adjacency.edgesTellFacesApart);
    expectPlainResult(adjacency, survey, model);
}

TEST(EdgeAdjacency, aHubAtTheBeginningIsNone) {
    // In any order around the hub.
    RandomSource random(1);
    Mesh mesh = fan(5000, true);
    std::vector<int> rim;
    for (int point = 1; point <= 5000; ++point)
        rim.push_back(point);
    shuffle(rim, random);
    for (std::array<int, 3>& triangle : mesh.triangles) {
        triangle[1] = rim[static_cast<std::size_t>(triangle[1] - 1)];
        triangle[2] = rim[static_cast<std::size_t>(triangle[2] - 1)];
    }
    ObjModel model;
    fillCompacted(mesh, model, random);
    // Compaction has moved the hub among the others; back to the beginning.
    ObjModel moved;
    fillModel(mesh, moved);
    std::sort(moved.faces.begin(), moved.faces.end());
    FaceSurvey survey(moved);
    const std::optional<EdgeAdjacency> adjacency = findEdgesByGroups(moved, survey);
    ASSERT_TRUE(adjacency.has_value());
    expectPlainResult(*adjacency, survey, moved);
}

// --- edges from parents -----------------------------------------------------

TEST(ParentEdges, tellTheEdgesOfTheChildren) {
    int roundsWithout = 0;
    for (int seed = 0; seed < 1500; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(static_cast<std::uint64_t>(seed));
        ObjModel model;
        fillCompacted(randomMesh(random), model, random);
        ParentEdges parents;
        for (int round = 0; round < 3 && model.faces.size() < 2000; ++round) {
            const bool isKnown = !parents.edgesOfFaces.empty();
            FaceSurvey survey(model);
            findEdgesByFiling(model, survey);  // a survey begins anew with each way
            const std::optional<EdgeAdjacency> adjacency = deriveEdges(model, parents, survey);
            EXPECT_EQ(adjacency.has_value(), isKnown);
            roundsWithout += round > 0 && !isKnown ? 1 : 0;
            if (adjacency) {
                EXPECT_TRUE(adjacency->edgesTellFacesApart);
                expectPlainResult(*adjacency, survey, model);
            }
            ObjModel twin;
            copyTables(model, twin);
            subdivideOnceSlowly(twin);
            subdivideOnce(model, parents);
            EXPECT_TRUE(sameState(twin, model));
        }
        if (HasFailure())
            return;
    }
    // Where points fell together, or without any face.
    EXPECT_LT(roundsWithout, 100);
}

TEST(ParentEdges, areNotKeptOfFacesThatShareTwoEdges) {
    for (const std::vector<std::array<int, 3>>& triangles :
         {std::vector<std::array<int, 3>>{{0, 1, 2}, {0, 2, 1}},
          std::vector<std::array<int, 3>>{{0, 0, 1}}}) {
        ObjModel model;
        fillModel({{{0, 0, 0}, {4, 0, 0}, {0, 4, 0}}, triangles}, model);
        ParentEdges parents;
        subdivideOnce(model, parents);
        EXPECT_TRUE(parents.edgesOfFaces.empty());
    }
}

TEST(ParentEdges, stayAsTheyWereWhenARoundFails) {
    ObjModel model;
    fillModel(tetrahedron(), model);
    std::sort(model.faces.begin(), model.faces.end());
    ParentEdges parents;
    subdivideOnce(model, parents);
    ASSERT_FALSE(parents.edgesOfFaces.empty());
    const Face face = model.faces[5];
    model.faces[5].elements[1].vertexIndex = 10;
    EXPECT_THROW(subdivideOnce(model, parents), std::out_of_range);
    model.faces[5] = face;
    FaceSurvey survey(model);
    EXPECT_TRUE(deriveEdges(model, parents, survey).has_value());
}

// --- a host between two rounds ----------------------------------------------

// Vertex index in some face.
std::int32_t& cornerOf(ObjModel& model, std::size_t face, std::size_t corner) {
    return model.faces[face].elements[corner].vertexIndex;
}

// The next round must be that of the faces as they are now.
void expectRoundAsOfTwin(ObjModel& model, ParentEdges& parents) {
    ObjModel twin;
    copyTables(model, twin);
    subdivideOnceSlowly(twin);
    subdivideOnce(model, parents);
    EXPECT_TRUE(sameState(twin, model)) << firstDifference(printState(twin), printState(model));
}

void fillWithOneRoundDone(ObjModel& model, ParentEdges& parents) {
    Mesh mesh = tetrahedron();
    mesh.addPoint(3, 3, 3);
    mesh.triangles.push_back({0, 1, 4});  // its edge 0-1 has three faces
    fillModel(mesh, model);
    std::sort(model.faces.begin(), model.faces.end());
    subdivideOnce(model, parents);
    ASSERT_FALSE(parents.edgesOfFaces.empty());
}

TEST(SpoiledFaces, anyCornerWithAnyVertex) {
    int harmlessChanges = 0;
    ObjModel whole;
    ParentEdges ignored;
    fillWithOneRoundDone(whole, ignored);
    for (std::size_t face = 0; face < whole.faces.size(); ++face) {
        for (std::size_t corner = 0; corner < CORNERS_PER_FACE; ++corner) {
            for (int vertex = 0; vertex < whole.getNumberOfVertices(); ++vertex) {
                SCOPED_TRACE(std::to_string(face) + " " + std::to_string(corner) + " " +
                             std::to_string(vertex));
                ObjModel model;
                ParentEdges parents;
                fillWithOneRoundDone(model, parents);
                const bool isChange = cornerOf(model, face, corner) != vertex;
                cornerOf(model, face, corner) = vertex;
                FaceSurvey survey(model);
                const auto adjacency = deriveEdges(model, parents, survey);
                ASSERT_TRUE(adjacency.has_value() || isChange);
                harmlessChanges += adjacency.has_value() && isChange ? 1 : 0;
                if (adjacency)
                    expectPlainResult(*adjacency, survey, model);
                expectRoundAsOfTwin(model, parents);
                EXPECT_EQ(parents.edgesOfFaces.empty(), !adjacency.has_value());
                if (HasFailure())
                    return;
            }
        }
    }
    // The lone corner of the face with two boundary edges: any old vertex will do
    // there, except for the other two corners.
    EXPECT_EQ(harmlessChanges, 2);
}

TEST(SpoiledFaces, aVertexThatIsNotThere) {
    for (const int vertex : {-1, -2147483647 - 1, 13, 2147483647}) {
        for (const std::size_t face : {std::size_t(0), std::size_t(7), std::size_t(19)}) {
            ObjModel model;
            ParentEdges parents;
            fillWithOneRoundDone(model, parents);
            cornerOf(model, face, face % 3) = vertex;
            const std::string before = printState(model);
            EXPECT_THROW(subdivideOnce(model, parents), std::out_of_range);
            EXPECT_EQ(firstDifference(before, printState(model)), "");
        }
    }
}

struct SpoilingCase {
    const char* title;
    void (*spoil)(ObjModel& model);
    bool areParentsOfUse;
};

void renameVertex(ObjModel& model, std::int32_t from, std::int32_t to) {
    for (Face& face : model.faces) {
        for (FaceElement& corner : face.elements) {
            if (corner.vertexIndex == from)
                corner.vertexIndex = to;
        }
    }
}

const SpoilingCase SPOILING_CASES[] = {
    {"nothing", [](ObjModel&) {}, true},
    {"texture, normal, material and group",
     [](ObjModel& model) {
         model.faces[1].elements[0].textureIndex = 5;
         model.faces[2].elements[1].normalIndex = -7;
         model.faces[3].materialIndex = 100;
         model.faces[4].groupIndex = 100;
         model.faces[5].groupIndex = -100;
     },
     true},
    {"positions", [](ObjModel& model) { model.vertices[0].x = 1e300; }, true},
    {"two faces change places", [](ObjModel& model) { std::swap(model.faces[2], model.faces[3]); },
     false},
    {"two families change places",
     [](ObjModel& model) {
         std::swap_ranges(model.faces.begin(), model.faces.begin() + 4, model.faces.begin() + 4);
     },
     false},
    {"a family twice",
     [](ObjModel& model) {
         std::copy(model.faces.begin(), model.faces.begin() + 4, model.faces.begin() + 8);
     },
     false},
    {"all families the same",
     [](ObjModel& model) {
         for (std::size_t face = 4; face < model.faces.size(); ++face)
             model.faces[face] = model.faces[face % 4];
     },
     false},
    {"an inner face turned over",
     [](ObjModel& model) { std::swap(cornerOf(model, 3, 0), cornerOf(model, 3, 1)); }, false},
    {"a face turned by one corner",
     [](ObjModel& model) {
         std::rotate(model.faces[1].elements, model.faces[1].elements + 1,
                     model.faces[1].elements + 3);
     },
     false},
    {"two old vertices exchanged everywhere",
     [](ObjModel& model) {
         renameVertex(model, 0, 13);
         renameVertex(model, 1, 0);
         renameVertex(model, 13, 1);
     },
     true},
    {"an old vertex everywhere another", [](ObjModel& model) { renameVertex(model, 4, 3); }, true},
    {"both ends of edges the same vertex", [](ObjModel& model) { renameVertex(model, 1, 0); },
     false},
    {"an old vertex everywhere an edge's", [](ObjModel& model) { renameVertex(model, 4, 6); },
     false},
    {"an edge's vertex everywhere another's", [](ObjModel& model) { renameVertex(model, 6, 7); },
     false},
    {"an old vertex in one family only", [](ObjModel& model) { cornerOf(model, 0, 0) = 4; }, false},
};

TEST(SpoiledFaces, inWaysOfManyKinds) {
    for (const SpoilingCase& row : SPOILING_CASES) {
        SCOPED_TRACE(row.title);
        ObjModel model;
        ParentEdges parents;
        fillWithOneRoundDone(model, parents);
        row.spoil(model);
        FaceSurvey survey(model);
        EXPECT_EQ(deriveEdges(model, parents, survey).has_value(), row.areParentsOfUse);
        expectRoundAsOfTwin(model, parents);
        expectRoundAsOfTwin(model, parents);
    }
}

TEST(SpoiledFaces, tablesOfOtherSizes) {
    ObjModel model;
    ParentEdges parents;
    fillWithOneRoundDone(model, parents);
    FaceSurvey survey(model);
    Vertex vertex(1, 2, 3);
    model.addVertex(vertex);
    EXPECT_FALSE(deriveEdges(model, parents, survey).has_value());
    model.vertices.pop_back();
    EXPECT_TRUE(deriveEdges(model, parents, survey).has_value());
    model.faces.pop_back();
    EXPECT_FALSE(deriveEdges(model, parents, survey).has_value());
}

TEST(SpoiledFaces, atRandom) {
    for (int seed = 0; seed < 3000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(static_cast<std::uint64_t>(seed));
        ObjModel model;
        fillCompacted(randomMesh(random), model, random);
        if (model.faces.empty())
            continue;
        ParentEdges parents;
        subdivideOnce(model, parents);
        const int changes = random.between(1, 3);
        for (int change = 0; change < changes; ++change) {
            const auto face = static_cast<std::size_t>(random.below(model.getNumberOfFaces()));
            const auto other = static_cast<std::size_t>(random.below(model.getNumberOfFaces()));
            const auto corner = static_cast<std::size_t>(random.below(CORNERS_PER_FACE));
            if (random.oneIn(3))
                std::swap(model.faces[face], model.faces[other]);
            else if (random.oneIn(2))
                cornerOf(model, face, corner) = cornerOf(model, other, corner);
            else
                renameVertex(model, random.below(model.getNumberOfVertices()),
                             random.below(model.getNumberOfVertices()));
        }
        expectRoundAsOfTwin(model, parents);
        if (model.faces.size() < 500)
            expectRoundAsOfTwin(model, parents);
        if (HasFailure())
            return;
    }
}

// --- as a host does it ------------------------------------------------------

ObjModel* modelToSpoil = nullptr;

TEST(SpoiledFaces, byTheCallbackBeforeTheSecondRound) {
    ObjModel model;
    fillModel(tetrahedron(), model);
    std::sort(model.faces.begin(), model.faces.end());
    ObjModel twin;
    copyTables(model, twin);
    subdivideOnceSlowly(twin);
    cornerOf(twin, 2, 0) = 1;
    subdivideOnceSlowly(twin);

    modelToSpoil = &model;
    ObjConverter::getInstance()->setMsgCallback([](int, const char* text) {
        if (std::string(text) == "Subdivision 2...")
            cornerOf(*modelToSpoil, 2, 0) = 1;
    });
    subdivide(LIMIT_ITERATIONS, 2, model);
    ObjConverter::getInstance()->setMsgCallback(nullptr);
    EXPECT_TRUE(sameState(twin, model)) << firstDifference(printState(twin), printState(model));
}

}  // namespace

}  // namespace obj_adapter::test
