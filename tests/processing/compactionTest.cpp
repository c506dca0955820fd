// Merging vertices and removing duplicate faces: processing/compaction.cpp with
// bucketSort.h, vertexOrder.h and faceOrder.h.
#include "processing/compaction.h"

#include "groups/groupTable.h"
#include "model/objModel.h"
#include "processing/bucketSort.h"
#include "processing/vertexOrder.h"
#include "support/countedMemory.h"
#include "support/describe.h"
#include "support/importText.h"
#include "support/modelChecker.h"
#include "support/modelView.h"
#include "support/printedModel.h"
#include "support/randomSource.h"
#include "support/slowCompaction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

const double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
const double POSITIVE_INFINITY = std::numeric_limits<double>::infinity();

// --- Models from text and as text

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

// "0 0 0, nan -0 inf w2"
void addVertices(ObjModel& model, const std::string& text) {
    for (const std::string& entry : split(text, ',')) {
        std::vector<double> coordinates;
        double weight = 1.0;
        std::istringstream tokens(entry);
        for (std::string token; tokens >> token;) {
            if (token[0] == 'w')
                weight = std::strtod(token.c_str() + 1, nullptr);
            else
                coordinates.push_back(std::strtod(token.c_str(), nullptr));
        }
        Vertex vertex(coordinates.at(0), coordinates.at(1), coordinates.at(2));
        vertex.w = weight;
        model.addVertex(vertex);
    }
}

int readIndex(const std::string& text) {
    return text == "-" ? NO_INDEX : std::atoi(text.c_str());
}

// "0 1 2, 0/4/5 1/- 2 m1 g1": table indices from 0, "-" for none, m for the
// material, g for the group.
void addFaces(ObjModel& model, const std::string& text) {
    for (const std::string& entry : split(text, ',')) {
        Face face;
        face.groupIndex = 0;
        int cornerCount = 0;
        std::istringstream tokens(entry);
        for (std::string token; tokens >> token;) {
            if (token[0] == 'm') {
                face.materialIndex = readIndex(token.substr(1));
            } else if (token[0] == 'g') {
                face.groupIndex = readIndex(token.substr(1));
            } else {
                const std::vector<std::string> indices = split(token, '/');
                FaceElement& corner = face.elements[cornerCount++];
                corner.vertexIndex = readIndex(indices[0]);
                if (indices.size() > 1)
                    corner.textureIndex = readIndex(indices[1]);
                if (indices.size() > 2)
                    corner.normalIndex = readIndex(indices[2]);
            }
        }
        model.addFace(face);
    }
    rebuildGroupFaceLists(model);
}

const char* const GROUP_NAMES[] = {"a", "b", "c"};

// The tables beside vertices and faces: the groups a, b and c, texture points
// and normals for the indices 0 to 9.
void addOtherTables(ObjModel& model) {
    for (const char* name : GROUP_NAMES)
        addGroup(model, name);
    for (int number = 0; number < 10; ++number) {
        TexturePoint texturePoint;
        texturePoint.u = 0.5 - number / 2;
        texturePoint.v = 0.25;
        model.addTexturePoint(texturePoint);
        NormalPoint normal;
        normal.x = number % 2;
        normal.y = 0.0;
        normal.z = 1.0;
        model.addNormalPoint(normal);
    }
}

// A view with materials for the checker: more than any test names.
ModelView viewWithMaterials(ObjModel& model) {
    static std::vector<Material> materials(4);
    ModelView view = viewOfModel(model);
    view.materials = materials;
    return view;
}

// Every bit of the model that compaction may touch.
std::string printAll(ObjModel& model) {
    std::string text = printModel(viewOfModel(model));
    for (const Face& face : model.faces) {
        text += "key";
        for (const std::int32_t index : face.sortedVertexIndices)
            text += " " + std::to_string(index);
        text += face.sortedKeyValid ? " valid\n" : "\n";
    }
    text += model.hierarchyValid ? "hierarchy valid\n" : "";
    text += model.hasConflictingFaces ? "conflicts\n" : "";
    return text;
}

void expectCompact(ObjModel& model) {
    EXPECT_EQ(findViolations(viewWithMaterials(model), ModelState::COMPACTED), "");
    EXPECT_FALSE(model.hierarchyValid);
    for (const Face& face : model.faces) {
        EXPECT_TRUE(face.sortedKeyValid);
        Face fresh = face;
        fresh.sortedKeyValid = false;
        fresh.refreshSortedKey();
        EXPECT_TRUE(std::equal(std::begin(fresh.sortedVertexIndices),
                               std::end(fresh.sortedVertexIndices), face.sortedVertexIndices));
    }
    for (std::size_t position = 1; position < model.vertices.size(); ++position)
        EXPECT_FALSE(model.vertices[position - 1] == model.vertices[position]) << position;
}

// --- Tables

struct CompactionCase {
    const char* title;
    const char* vertices;
    const char* faces;
    const char* compactVertices;
    const char* compactFaces;
    const char* groups;
    bool hasConflict;
};

void checkCases(const CompactionCase* begin, const CompactionCase* end) {
    for (const CompactionCase* row = begin; row != end; ++row) {
        SCOPED_TRACE(row->title);
        ObjModel model;
        addOtherTables(model);
        addVertices(model, row->vertices);
        addFaces(model, row->faces);
        model.hierarchyValid = true;
        model.hasConflictingFaces = !row->hasConflict;

        compactData(model);
        EXPECT_EQ(describeVertices(viewOfModel(model)), row->compactVertices);
        EXPECT_EQ(describeFaces(viewOfModel(model)), row->compactFaces);
        EXPECT_EQ(describeGroups(viewOfModel(model)), row->groups);
        EXPECT_EQ(model.hasConflictingFaces, row->hasConflict);
        expectCompact(model);
    }
}

template <std::size_t SIZE>
void checkCases(const CompactionCase (&cases)[SIZE]) {
    checkCases(cases, cases + SIZE);
}

const char* const FOUR_VERTICES = "0 0 0, 1 0 0, 2 0 0, 3 0 0";
const char* const FOUR_VERTICES_AFTER = "(0 0 0 w1) (1 0 0 w1) (2 0 0 w1) (3 0 0 w1)";

TEST(Compaction, faceThatLosesACornerIsRemoved) {
    const CompactionCase cases[] = {
        {"first and last corner become one", "1 0 0, 0 0 0, 1 0 0", "0 1 2",
         "(0 0 0 w1) (1 0 0 w1)", "", "a:; b:; c:", false},
        {"first and second", "1 0 0, 1 0 0, 0 0 0", "0 1 2", "(0 0 0 w1) (1 0 0 w1)", "",
         "a:; b:; c:", false},
        {"second and last", "0 0 0, 1 0 0, 1 0 0", "0 1 2", "(0 0 0 w1) (1 0 0 w1)", "",
         "a:; b:; c:", false},
        {"all three", "1 2 3, 1 2 3, 1 2 3", "0 1 2", "(1 2 3 w1)", "", "a:; b:; c:", false},
        {"a corner that stood twice already, whatever its texture point", FOUR_VERTICES,
         "0/0 1/1 0/2, 1 2 3", FOUR_VERTICES_AFTER, "[1 2 3]", "a: 0; b:; c:", false},
        {"the others close up and keep their group", FOUR_VERTICES,
         "0 1 2 g1, 0 0 1 g0, 1 2 3 g2, 3 3 3 g1", FOUR_VERTICES_AFTER, "[0 1 2] [1 2 3]",
         "a:; b: 0; c: 1", false},
    };
    checkCases(cases);
}

TEST(Compaction, rotatedFaceOfTheSameGroupIsRemoved) {
    const CompactionCase cases[] = {
        {"same start", FOUR_VERTICES, "0/4/7 1/5/8 2/6/9, 0/4/7 1/5/8 2/6/9", FOUR_VERTICES_AFTER,
         "[0/4/7 1/5/8 2/6/9]", "a: 0; b:; c:", false},
        {"1 2 3 and 2 3 1", FOUR_VERTICES, "0/4/7 1/5/8 2/6/9, 1/5/8 2/6/9 0/4/7",
         FOUR_VERTICES_AFTER, "[0/4/7 1/5/8 2/6/9]", "a: 0; b:; c:", false},
        {"1 2 3 and 3 1 2", FOUR_VERTICES, "0/4/7 1/5/8 2/6/9, 2/6/9 0/4/7 1/5/8",
         FOUR_VERTICES_AFTER, "[0/4/7 1/5/8 2/6/9]", "a: 0; b:; c:", false},
        {"the first of the table survives", FOUR_VERTICES, "2 0 1, 0 1 2, 1 2 0",
         FOUR_VERTICES_AFTER, "[2 0 1]", "a: 0; b:; c:", false},
        {"they meet only after merging", "0 0 0, 1 0 0, 2 0 0, 2 0 0, 0 0 0, 1 0 0", "0 1 2, 3 4 5",
         "(0 0 0 w1) (1 0 0 w1) (2 0 0 w1)", "[0 1 2]", "a: 0; b:; c:", false},
        {"not neighbours in the table", FOUR_VERTICES, "0 1 2, 1 2 3, 1 2 0, 2 3 1",
         FOUR_VERTICES_AFTER, "[0 1 2] [1 2 3]", "a: 0 1; b:; c:", false},
    };
    checkCases(cases);
}

TEST(Compaction, facesThatDifferInACornerAreKeptAndConflict) {
    const CompactionCase cases[] = {
        {"another texture point", FOUR_VERTICES, "0/0 1/1 2/2, 0/0 1/1 2/3", FOUR_VERTICES_AFTER,
         "[0/0 1/1 2/2] [0/0 1/1 2/3]", "a: 0 1; b:; c:", true},
        {"another texture point at the first corner", FOUR_VERTICES, "0/0 1/1 2/2, 1/1 2/2 0/3",
         FOUR_VERTICES_AFTER, "[0/0 1/1 2/2] [1/1 2/2 0/3]", "a: 0 1; b:; c:", true},
        {"the first corner is nowhere in the other", FOUR_VERTICES, "0/3 1/1 2/2, 0/0 1/1 2/2",
         FOUR_VERTICES_AFTER, "[0/3 1/1 2/2] [0/0 1/1 2/2]", "a: 0 1; b:; c:", true},
        {"another normal", FOUR_VERTICES, "0/-/0 1/-/1 2/-/2, 0/-/0 1/-/2 2/-/2",
         FOUR_VERTICES_AFTER, "[0/-/0 1/-/1 2/-/2] [0/-/0 1/-/2 2/-/2]", "a: 0 1; b:; c:", true},
        {"texture points and none", FOUR_VERTICES, "0/0 1/1 2/2, 0 1 2", FOUR_VERTICES_AFTER,
         "[0/0 1/1 2/2] [0 1 2]", "a: 0 1; b:; c:", true},
    };
    checkCases(cases);
}

TEST(Compaction, mirroredFaceStaysAndConflicts) {
    const CompactionCase cases[] = {
        {"1 2 3 and 1 3 2", FOUR_VERTICES, "0 1 2, 0 2 1", FOUR_VERTICES_AFTER, "[0 1 2] [0 2 1]",
         "a: 0 1; b:; c:", true},
        {"1 2 3 and 2 1 3", FOUR_VERTICES, "0 1 2, 1 0 2", FOUR_VERTICES_AFTER, "[0 1 2] [1 0 2]",
         "a: 0 1; b:; c:", true},
        {"1 2 3 and 3 2 1", FOUR_VERTICES, "0 1 2, 2 1 0", FOUR_VERTICES_AFTER, "[0 1 2] [2 1 0]",
         "a: 0 1; b:; c:", true},
        {"only neighbours are compared: a duplicate behind the mirror image stays", FOUR_VERTICES,
         "0 1 2, 0 2 1, 1 2 0", FOUR_VERTICES_AFTER, "[0 1 2] [0 2 1] [1 2 0]",
         "a: 0 1 2; b:; c:", true},
        {"a duplicate before the mirror image goes", FOUR_VERTICES, "0 1 2, 1 2 0, 0 2 1, 2 1 0",
         FOUR_VERTICES_AFTER, "[0 1 2] [0 2 1]", "a: 0 1; b:; c:", true},
    };
    checkCases(cases);
}

TEST(Compaction, rotatedFaceOfAnotherGroupStaysAndConflicts) {
    const CompactionCase cases[] = {
        {"1 2 3 and 2 3 1", FOUR_VERTICES, "0 1 2 g0, 1 2 0 g1", FOUR_VERTICES_AFTER,
         "[0 1 2] [1 2 0]", "a: 0; b: 1; c:", true},
        {"in table order, not by group", FOUR_VERTICES, "0 1 2 g2, 1 2 0 g0", FOUR_VERTICES_AFTER,
         "[0 1 2] [1 2 0]", "a: 1; b:; c: 0", true},
        {"a duplicate behind the other group's stays", FOUR_VERTICES,
         "0 1 2 g0, 0 1 2 g1, 0 1 2 g0", FOUR_VERTICES_AFTER, "[0 1 2] [0 1 2] [0 1 2]",
         "a: 0 2; b: 1; c:", true},
        {"each group loses its duplicate", FOUR_VERTICES, "0 1 2 g0, 1 2 0 g0, 2 0 1 g1, 0 1 2 g1",
         FOUR_VERTICES_AFTER, "[0 1 2] [2 0 1]", "a: 0; b: 1; c:", true},
    };
    checkCases(cases);
}

TEST(Compaction, materialsPlayNoPart) {
    const CompactionCase cases[] = {
        {"the later one goes", FOUR_VERTICES, "0 1 2 m1, 1 2 0 m0", FOUR_VERTICES_AFTER,
         "[0 1 2 m1]", "a: 0; b:; c:", false},
        {"with a material and without", FOUR_VERTICES, "0 1 2, 0 1 2 m3", FOUR_VERTICES_AFTER,
         "[0 1 2]", "a: 0; b:; c:", false},
    };
    checkCases(cases);
}

TEST(Compaction, verticesThatDifferInWeightAreMerged) {
    const CompactionCase cases[] = {
        {"the first of the table survives", "1 1 1 w3, 1 1 1 w2, 0 0 0 w5, 1 1 1 w4, 0 0 0 w6", "",
         "(0 0 0 w5) (1 1 1 w3)", "", "a:; b:; c:", false},
    };
    checkCases(cases);
}

TEST(Compaction, verticesAreSortedAndFacesFollow) {
    const CompactionCase cases[] = {
        {"by x, then y, then z", "1 0 0, 0 1 0, 0 0 1, 0 0 -1", "0 1 2, 1 2 3",
         "(0 0 -1 w1) (0 0 1 w1) (0 1 0 w1) (1 0 0 w1)", "[2 1 0] [3 2 1]",
         "a: 0 1; b:; c:", false},
        {"winding and indices of texture and normal stay", "2 0 0, 1 0 0, 0 0 0", "0/5/6 1/4 2/-/7",
         "(0 0 0 w1) (1 0 0 w1) (2 0 0 w1)", "[2/5/6 1/4 0/-/7]", "a: 0; b:; c:", false},
        {"there is no tolerance", "1.0000000000000002 0 0, 1 0 0, 0.9999999999999999 0 0", "0 1 2",
         "(1 0 0 w1) (1 0 0 w1) (1 0 0 w1)", "[2 1 0]", "a: 0; b:; c:", false},
        {"zeros of either sign are one, the first survives", "0 0 0 w2, -0 0 -0 w3, 1 0 0, 2 0 0",
         "1 2 3", "(0 0 0 w2) (1 0 0 w1) (2 0 0 w1)", "[0 1 2]", "a: 0; b:; c:", false},
        {"and if that is the negative one", "-0 0 0 w2, 0 -0 0 w3", "", "(-0 0 0 w2)", "",
         "a:; b:; c:", false},
        {"infinities are ordinary coordinates",
         "inf 0 0, -inf 0 0, inf 0 0, 0 inf 0, 1.7e308 0 0, -1.7e308 0 0", "0 1 2, 0 1 3, 4 5 0",
         "(-inf 0 0 w1) (-1.7e+308 0 0 w1) (0 inf 0 w1) (1.7e+308 0 0 w1) (inf 0 0 w1)",
         "[4 0 2] [3 1 4]", "a: 0 1; b:; c:", false},
    };
    checkCases(cases);
}

TEST(Compaction, notANumberComesLastAndEqualsItsNeighbour) {
    const CompactionCase cases[] = {
        {"merges with the number before it", "nan 0 0 w2, 1 0 0 w3", "", "(1 0 0 w3)", "",
         "a:; b:; c:", false},
        {"not where another coordinate differs", "nan 5 0 w2, 1 0 0 w3", "",
         "(1 0 0 w3) (nan 5 0 w2)", "", "a:; b:; c:", false},
        {"after infinity", "nan 1 0, inf 2 0", "", "(inf 2 0 w1) (nan 1 0 w1)", "",
         "a:; b:; c:", false},
        {"nothing but NaN", "nan nan nan w2, nan nan nan w3", "", "(nan nan nan w2)", "",
         "a:; b:; c:", false},
        {"compared with the last one kept", "0 0 nan w2, 0 0 1 w3, 0 1 0 w4, 0 nan 0 w5", "",
         "(0 0 1 w3) (0 1 0 w4)", "", "a:; b:; c:", false},
        {"a NaN that stays takes the next number in", "0 5 nan w2, 0 nan 7 w3, 1 0 0 w4", "",
         "(0 5 nan w2) (1 0 0 w4)", "", "a:; b:; c:", false},
        {"faces follow", "nan 0 0, 1 0 0, 2 5 0, 3 5 0, nan 6 0", "0 2 3, 1 2 3, 4 2 3",
         "(1 0 0 w1) (2 5 0 w1) (3 5 0 w1) (nan 0 0 w1) (nan 6 0 w1)", "[0 1 2] [3 1 2] [4 1 2]",
         "a: 0 1 2; b:; c:", false},
    };
    checkCases(cases);
}

TEST(Compaction, compactDataKeepsItsVertices) {
    const CompactionCase cases[] = {
        {"faces are sorted, lists follow", FOUR_VERTICES, "3 2 1 g0, 0 2 3 g1, 1 0 2 g0",
         FOUR_VERTICES_AFTER, "[1 0 2] [0 2 3] [3 2 1]", "a: 0 2; b: 1; c:", false},
        {"sorted faces stay", FOUR_VERTICES, "1 0 2, 3 1 0, 0 2 3, 3 2 1", FOUR_VERTICES_AFTER,
         "[1 0 2] [3 1 0] [0 2 3] [3 2 1]", "a: 0 1 2 3; b:; c:", false},
        {"vertices that no face names stay", "5 0 0, 4 0 0", "", "(4 0 0 w1) (5 0 0 w1)", "",
         "a:; b:; c:", false},
        {"an empty model", "", "", "", "", "a:; b:; c:", false},
    };
    checkCases(cases);
}

TEST(Compaction, facesWithoutVerticesAreRemoved) {
    const CompactionCase cases[] = {
        {"no vertex table", "", "- - -", "", "", "a:; b:; c:", false},
        {"one corner without", FOUR_VERTICES, "0 - 2, 1 2 3", FOUR_VERTICES_AFTER, "[1 2 3]",
         "a: 0; b:; c:", false},
        {"behind the table", FOUR_VERTICES, "0 1 4, 1 2 3, 2147483647 0 1", FOUR_VERTICES_AFTER,
         "[1 2 3]", "a: 0; b:; c:", false},
        {"far below", FOUR_VERTICES, "0 1 -2147483648, 1 2 3, -2 0 1", FOUR_VERTICES_AFTER,
         "[1 2 3]", "a: 0; b:; c:", false},
        {"behind the table in the old numbers, though not in the new", "0 0 0, 1 0 0, 1 0 0, 2 0 0",
         "0 1 4, 0 2 3", "(0 0 0 w1) (1 0 0 w1) (2 0 0 w1)", "[0 1 2]", "a: 0; b:; c:", false},
    };
    checkCases(cases);
}

TEST(Compaction, texturePointsAndNormalsStaySeparate) {
    ImportOptions options;
    options.compaction = true;
    const ImportResult result = importText(
        "v 1 0 0\nv 0 1 0\nv 0 0 1\n"
        "vt 0.5 0.5\nvt 0.5 0.5\nvt 0.25 0.5\n"
        "vn 0 0 1\nvn 0 0 1\nvn 0 0 -1\n"
        "f 1/1/1 2/2/2 3/3/3\n",
        options);
    EXPECT_EQ(describeTexturePoints(result.model), "(0.5 0.5 w0) (0.5 0.5 w0) (0.25 0.5 w0)");
    EXPECT_EQ(describeNormalPoints(result.model), "(0 0 1) (0 0 1) (0 0 -1)");
    EXPECT_EQ(describeVertices(result.model), "(0 0 1 w1) (0 1 0 w1) (1 0 0 w1)");
    EXPECT_EQ(describeFaces(result.model), "[2/0/0 1/1/1 0/2/2]");
}

TEST(Compaction, importMergesOnlyWhenAsked) {
    const std::string text = "v 1 0 0\nv 0 0 0\nv 1 0 0\nf 1 2 3\n";
    EXPECT_EQ(describeFaces(importText(text).model), "[0 1 2]");

    ImportOptions options;
    options.compaction = true;
    const ImportResult compact = importText(text, options);
    EXPECT_EQ(describeVertices(compact.model), "(0 0 0 w1) (1 0 0 w1)");
    EXPECT_EQ(describeFaces(compact.model), "");
    EXPECT_EQ(describeGroups(compact.model), "test:");
}

TEST(Compaction, positionsCountAndNotTheIndexFields) {
    ObjModel model;
    addOtherTables(model);
    addVertices(model, "3 0 0, 2 0 0, 1 0 0, 2 0 0");
    addFaces(model, "0 1 2, 0 3 2");
    for (Vertex& vertex : model.vertices)
        vertex.index = 1000 - vertex.index;
    model.vertices[1].index = -7;

    compactData(model);
    EXPECT_EQ(describeVertices(viewOfModel(model)), "(1 0 0 w1) (2 0 0 w1) (3 0 0 w1)");
    EXPECT_EQ(describeFaces(viewOfModel(model)), "[2 1 0]");
    expectCompact(model);
}

TEST(Compaction, staleSortedIndicesDoNotMatter) {
    ObjModel model;
    addOtherTables(model);
    addVertices(model, FOUR_VERTICES);
    addFaces(model, "3 2 1, 2 1 0");
    for (const Face& face : model.faces) {
        face.sortedVertexIndices[0] = 77;
        face.sortedKeyValid = true;
    }
    compactData(model);
    EXPECT_EQ(describeFaces(viewOfModel(model)), "[2 1 0] [3 2 1]");
    expectCompact(model);
}

TEST(Compaction, facesOfNoGroupAreListedNowhere) {
    ObjModel model;
    addOtherTables(model);
    addVertices(model, FOUR_VERTICES);
    addFaces(model, "1 2 3 g3, 0 1 2 g-1, 0 1 3 g2147483647, 0 2 3 g1, 2 0 1 g-1");
    compactData(model);
    EXPECT_EQ(describeFaces(viewOfModel(model)), "[0 1 2] [0 1 3] [0 2 3] [1 2 3]");
    EXPECT_EQ(describeGroups(viewOfModel(model)), "a:; b: 2; c:");
    EXPECT_FALSE(model.hasConflictingFaces);
}

TEST(Compaction, noGroupsAtAll) {
    ObjModel model;
    addVertices(model, FOUR_VERTICES);
    addFaces(model, "1 2 3, 0 1 2");
    compactData(model);
    EXPECT_EQ(describeFaces(viewOfModel(model)), "[0 1 2] [1 2 3]");
}

// --- Generated models

// The coordinates of a generated model: few, so that vertices often meet.
enum class Coordinates { FEW, FEW_IN_BLOCKS, FEW_WITH_ODD_ONES, MANY_SIZES, EVEN };

double generateCoordinate(RandomSource& random, Coordinates kind) {
    const double ODD_ONES[] = {0.0,
                               -0.0,
                               1.0,
                               NOT_A_NUMBER,
                               -NOT_A_NUMBER,
                               POSITIVE_INFINITY,
                               -POSITIVE_INFINITY,
                               std::numeric_limits<double>::denorm_min(),
                               std::numeric_limits<double>::max(),
                               -std::numeric_limits<double>::max()};
    switch (kind) {
        case Coordinates::FEW:
        case Coordinates::FEW_IN_BLOCKS:
            return random.between(-1, 2);
        case Coordinates::FEW_WITH_ODD_ONES:
            return ODD_ONES[random.below(static_cast<int>(std::size(ODD_ONES)))];
        case Coordinates::MANY_SIZES:
            return std::ldexp(random.fraction() - 0.5, random.between(-1080, 1024));
        default:
            return random.oneIn(3) ? random.below(100) : random.fraction();
    }
}

struct Dimensions {
    int vertexCount;
    int faceCount;
    Coordinates coordinates;
    int groupCount = static_cast<int>(std::size(GROUP_NAMES));
};

Face generateFace(RandomSource& random, const ObjModel& model) {
    const int vertexCount = model.getNumberOfVertices();
    Face face;
    for (FaceElement& corner : face.elements) {
        corner.vertexIndex = vertexCount == 0 ? NO_INDEX : random.below(vertexCount);
        corner.textureIndex = random.oneIn(4) ? random.below(2) : NO_INDEX;
        corner.normalIndex = random.oneIn(4) ? random.below(2) : NO_INDEX;
    }
    face.groupIndex = random.below(model.getNumberOfGroups());
    face.materialIndex = random.between(NO_INDEX, 3);
    return face;
}

// An earlier face turned, mirrored, or moved to other vertices at its places.
Face generateRelative(RandomSource& random, const ObjModel& model) {
    Face face = model.faces[static_cast<std::size_t>(random.below(model.getNumberOfFaces()))];
    std::rotate(face.elements, face.elements + random.below(CORNERS_PER_FACE),
                face.elements + CORNERS_PER_FACE);
    if (random.oneIn(4))
        std::swap(face.elements[0], face.elements[1]);
    if (random.oneIn(4))
        face.groupIndex = random.below(model.getNumberOfGroups());
    if (random.oneIn(20))
        face.elements[random.below(CORNERS_PER_FACE)].vertexIndex = NO_INDEX;
    if (random.oneIn(2))
        face.materialIndex = random.between(NO_INDEX, 3);
    return face;
}

// Every vertex has its number for a weight: so a test sees which one survived.
void generateModel(std::uint64_t seed, const Dimensions& dimensions, ObjModel& model) {
    constexpr int AVERAGE_BLOCK = 60;
    RandomSource random(seed);
    addOtherTables(model);
    while (model.getNumberOfGroups() < dimensions.groupCount)
        addGroup(model, "another");
    for (int number = 0; number < dimensions.vertexCount; ++number) {
        Vertex vertex;
        for (double* coordinate : {&vertex.x, &vertex.y, &vertex.z})
            *coordinate = generateCoordinate(random, dimensions.coordinates);
        if (number > 0 && dimensions.coordinates == Coordinates::FEW_IN_BLOCKS) {
            if (!random.oneIn(AVERAGE_BLOCK))
                vertex = model.vertices.back();
        } else if (number > 0 && random.oneIn(3)) {
            vertex = model.vertices[static_cast<std::size_t>(random.below(number))];
        }
        vertex.w = number;
        model.addVertex(vertex);
    }
    for (int number = 0; number < dimensions.faceCount; ++number) {
        const bool isRelative = number > 0 && random.oneIn(3);
        const Face face =
            isRelative ? generateRelative(random, model) : generateFace(random, model);
        model.addFace(face);
    }
    if (random.oneIn(8))
        std::sort(model.faces.begin(), model.faces.end());
    rebuildGroupFaceLists(model);
    model.hierarchyValid = true;
    model.hasConflictingFaces = random.oneIn(2);
}

// Compacts twice with the library and once with the twin.
void checkAgainstTwin(std::uint64_t seed, const Dimensions& dimensions) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    ObjModel model;
    ObjModel twin;
    generateModel(seed, dimensions, model);
    generateModel(seed, dimensions, twin);
    ASSERT_EQ(printAll(model), printAll(twin));

    compactData(model);
    compactDataSlowly(twin);
    const std::string once = printAll(model);
    ASSERT_EQ(once, printAll(twin));
    expectCompact(model);

    compactData(model);
    ASSERT_EQ(printAll(model), once);
}

const Coordinates ALL_COORDINATES[] = {Coordinates::FEW, Coordinates::FEW_WITH_ODD_ONES,
                                       Coordinates::MANY_SIZES, Coordinates::EVEN};

TEST(Compaction, smallModelsEqualTheTwinAndStayWhenCompactedAgain) {
    constexpr int ROUNDS = 4000;
    for (int round = 0; round < ROUNDS && !::testing::Test::HasFailure(); ++round) {
        RandomSource random(static_cast<std::uint64_t>(round));
        const Dimensions dimensions = {random.below(40), random.below(40),
                                       ALL_COORDINATES[round % 4]};
        checkAgainstTwin(static_cast<std::uint64_t>(round), dimensions);
    }
}

// Too long for copies: runs are dealt out, some again and again and by every key.
TEST(Compaction, hugeModelsEqualTheTwin) {
    constexpr int ROUNDS = 8;
    for (int round = 0; round < ROUNDS && !::testing::Test::HasFailure(); ++round) {
        RandomSource random(static_cast<std::uint64_t>(round));
        const Dimensions dimensions = {random.between(10000, 40000), random.between(10000, 40000),
                                       ALL_COORDINATES[round % 4]};
        checkAgainstTwin(static_cast<std::uint64_t>(round), dimensions);
    }
}

// Whole runs fit the copies.
TEST(Compaction, bigModelsEqualTheTwin) {
    constexpr int ROUNDS = 40;
    for (int round = 0; round < ROUNDS && !::testing::Test::HasFailure(); ++round) {
        RandomSource random(static_cast<std::uint64_t>(round));
        const Dimensions dimensions = {random.between(65, 4000), random.between(65, 4000),
                                       ALL_COORDINATES[round % 4]};
        checkAgainstTwin(static_cast<std::uint64_t>(round), dimensions);
    }
}

// More groups than have their lists filled while faces are sorted.
TEST(Compaction, facesOfManyGroupsEqualTheTwin) {
    constexpr int ROUNDS = 20;
    for (int round = 0; round < ROUNDS && !::testing::Test::HasFailure(); ++round) {
        RandomSource random(static_cast<std::uint64_t>(round));
        checkAgainstTwin(static_cast<std::uint64_t>(round),
                         {random.between(65, 4000), random.between(65, 4000),
                          ALL_COORDINATES[round % 4], random.between(250, 1000)});
    }
}

// Few vertices and many faces: long runs over the same vertices.
TEST(Compaction, crowdedFacesEqualTheTwin) {
    constexpr int ROUNDS = 40;
    for (int round = 0; round < ROUNDS && !::testing::Test::HasFailure(); ++round) {
        RandomSource random(static_cast<std::uint64_t>(round));
        const int faceCount = random.between(500, random.oneIn(4) ? 20000 : 3000);
        checkAgainstTwin(static_cast<std::uint64_t>(round),
                         {random.between(3, 8), faceCount, Coordinates::EVEN});
    }
}

// Long runs of equal vertices, which dealing out brings out of their order: the
// first survives all the same.
TEST(Compaction, crowdedVerticesEqualTheTwin) {
    constexpr int ROUNDS = 40;
    for (int round = 0; round < ROUNDS && !::testing::Test::HasFailure(); ++round) {
        RandomSource random(static_cast<std::uint64_t>(round));
        checkAgainstTwin(static_cast<std::uint64_t>(round),
                         {random.between(1000, random.oneIn(4) ? 20000 : 4000), random.below(50),
                          Coordinates::FEW_IN_BLOCKS});
    }
}

// One coordinate varies, the others are shared; over and over, at all orders.
TEST(Compaction, tablesThatDifferInOneCoordinateEqualTheTwin) {
    for (int axis = 0; axis < 3; ++axis) {
        SCOPED_TRACE(axis);
        ObjModel model;
        ObjModel twin;
        for (ObjModel* filled : {&model, &twin}) {
            RandomSource random(static_cast<std::uint64_t>(axis));
            for (int number = 0; number < 20000; ++number) {
                Vertex vertex(7.0, -POSITIVE_INFINITY, NOT_A_NUMBER);
                double* const coordinates[] = {&vertex.x, &vertex.y, &vertex.z};
                *coordinates[axis] = random.below(500) * 1e-300;
                vertex.w = number;
                filled->addVertex(vertex);
            }
        }
        compactData(model);
        compactDataSlowly(twin);
        EXPECT_EQ(printAll(model), printAll(twin));
        EXPECT_GT(model.getNumberOfVertices(), 0);
    }
}

TEST(Compaction, triangleAndItsRotationsBecomeOne) {
    RandomSource random(1);
    for (int round = 0; round < 200; ++round) {
        ObjModel model;
        addOtherTables(model);
        addVertices(model, FOUR_VERTICES);
        std::array<int, 4> order = {0, 1, 2, 3};
        for (int place = 3; place > 0; --place)
            std::swap(order[static_cast<std::size_t>(place)],
                      order[static_cast<std::size_t>(random.below(place + 1))]);
        Face face;
        for (int corner = 0; corner < CORNERS_PER_FACE; ++corner)
            face.elements[corner] = {order[static_cast<std::size_t>(corner)], random.below(3),
                                     random.below(3)};
        face.groupIndex = random.below(3);
        const Face first = face;
        for (int copy = 0; copy < CORNERS_PER_FACE; ++copy) {
            model.addFace(face);
            std::rotate(face.elements, face.elements + 1, face.elements + CORNERS_PER_FACE);
        }
        compactData(model);
        ASSERT_EQ(model.getNumberOfFaces(), 1);
        EXPECT_FALSE(model.hasConflictingFaces);
        for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
            EXPECT_EQ(describeCorner(model.faces[0].elements[corner]),
                      describeCorner(first.elements[corner]));
        }
    }
}

// Quadratic work would run into the time limit.
TEST(Compaction, manyEqualRecordsTakeLinearTime) {
    constexpr int COUNT = 300000;
    ObjModel model;
    addOtherTables(model);
    addVertices(model, FOUR_VERTICES);
    for (int number = 0; number < COUNT; ++number) {
        Vertex vertex(2, 0, 0);
        model.addVertex(vertex);
    }
    Face face;
    face.groupIndex = 1;
    for (int number = 0; number < COUNT; ++number) {
        face.elements[0].vertexIndex = 0;
        face.elements[1].vertexIndex = 4 + number;
        face.elements[2].vertexIndex = 3;
        model.addFace(face);
    }
    compactData(model);
    EXPECT_EQ(describeVertices(viewOfModel(model)), FOUR_VERTICES_AFTER);
    EXPECT_EQ(describeFaces(viewOfModel(model)), "[0 2 3]");
    EXPECT_EQ(describeGroups(viewOfModel(model)), "a:; b: 0; c:");
}

// --- Memory

// Leaves the lists of two groups too short, as a host can that writes into the
// faces that it is lent.
void generateModelWithShortLists(ObjModel& model) {
    generateModel(5, {300, 300, Coordinates::FEW_WITH_ODD_ONES}, model);
    for (Face& face : model.faces)
        face.groupIndex = face.groupIndex == 0 ? 1 : 2;
    for (Group& group : model.groups) {
        group.faceIndices.clear();
        group.faceIndices.shrink_to_fit();
    }
}

TEST(Compaction, modelStaysAsItWasWhenMemoryRunsOut) {
    ObjModel twin;
    generateModelWithShortLists(twin);
    compactDataSlowly(twin);

    int failures = 0;
    for (bool isDone = false; !isDone; ++failures) {
        SCOPED_TRACE(failures);
        ObjModel model;
        generateModelWithShortLists(model);
        const std::string before = printAll(model);
        failAllocationAfter(failures);
        try {
            compactData(model);
            isDone = true;
        } catch (const std::bad_alloc&) {
        }
        stopFailingAllocations();
        ASSERT_EQ(printAll(model), isDone ? printAll(twin) : before);
    }
    // The map, the count and two lists at the least.
    EXPECT_GE(failures, 4);
}

TEST(Compaction, asksForFourBytesForEachVertexAndAFixedAmount) {
    constexpr std::size_t FIXED_AMOUNT = 1250000;
    for (const int vertexCount : {20, 20000, 600000}) {
        ObjModel model;
        generateModel(6, {vertexCount, vertexCount, Coordinates::EVEN}, model);
        const std::size_t before = getBytesRequested();
        compactData(model);
        EXPECT_LE(getBytesRequested() - before,
                  static_cast<std::size_t>(vertexCount) * sizeof(std::int32_t) + FIXED_AMOUNT);
    }
}

// --- The keys and the sort by themselves

TEST(VertexOrder, exactKeysAscendAsCoordinatesDo) {
    const double denormal = std::numeric_limits<double>::denorm_min();
    const double highest = std::numeric_limits<double>::max();
    const double ascending[] = {
        -POSITIVE_INFINITY, -highest, -1.5, -1.0,    -denormal,         0.0,
        denormal,           1.0,      1.5,  highest, POSITIVE_INFINITY, NOT_A_NUMBER};
    for (std::size_t place = 1; place < std::size(ascending); ++place) {
        SCOPED_TRACE(place);
        EXPECT_LT(exactCoordinateKey(ascending[place - 1]), exactCoordinateKey(ascending[place]));
        EXPECT_LT(compareCoordinates(ascending[place - 1], ascending[place]), 0);
        EXPECT_GT(compareCoordinates(ascending[place], ascending[place - 1]), 0);
        EXPECT_EQ(compareCoordinates(ascending[place], ascending[place]), 0);
    }
    EXPECT_EQ(exactCoordinateKey(-0.0), exactCoordinateKey(0.0));
    EXPECT_EQ(exactCoordinateKey(-NOT_A_NUMBER), exactCoordinateKey(NOT_A_NUMBER));
    EXPECT_EQ(compareCoordinates(-0.0, 0.0), 0);
    EXPECT_EQ(compareCoordinates(-NOT_A_NUMBER, NOT_A_NUMBER), 0);
}

TEST(VertexOrder, coarseKeysNeverDescend) {
    const double highest = std::numeric_limits<double>::max();
    const double denormal = std::numeric_limits<double>::denorm_min();
    const double RANGES[][2] = {{0.0, 1.0},        {-1.0, 1.0},          {-highest, highest},
                                {0.0, denormal},   {5.0, 5.0},           {1e300, highest},
                                {-1e-310, 1e-310}, {1.0, 1.0 + 0x1p-52}, {-3e5, 7e5}};
    RandomSource random(2);
    for (const double* range : RANGES) {
        SCOPED_TRACE(describeNumber(range[0]) + " " + describeNumber(range[1]));
        CoarseCoordinateKey key;
        for (const double coordinate : {range[0], range[1], POSITIVE_INFINITY, NOT_A_NUMBER})
            key.addToRange(coordinate);
        key.setScale();

        std::vector<double> coordinates = {range[0], range[1], POSITIVE_INFINITY,
                                           -POSITIVE_INFINITY, NOT_A_NUMBER};
        for (int number = 0; number < 1000; ++number) {
            const double share = random.fraction();
            coordinates.push_back(range[0] * (1.0 - share) + range[1] * share);
        }
        std::sort(coordinates.begin(), coordinates.end(),
                  [](double a, double b) { return compareCoordinates(a, b) < 0; });
        for (std::size_t place = 1; place < coordinates.size(); ++place)
            EXPECT_LE(key(coordinates[place - 1]), key(coordinates[place])) << place;
        EXPECT_LE(key(coordinates.back()), std::numeric_limits<std::uint32_t>::max());
    }
}

TEST(VertexOrder, coarseKeysSpreadARangeEvenly) {
    CoarseCoordinateKey key;
    key.addToRange(-1.0);
    key.addToRange(3.0);
    key.setScale();
    EXPECT_EQ(key(-1.0), 0U);
    EXPECT_EQ(key(1.0), 0x7FFFFFFFU);
    EXPECT_EQ(key(3.0), 0xFFFFFFFEU);
    EXPECT_EQ(key(POSITIVE_INFINITY), 0xFFFFFFFFU);
    EXPECT_EQ(key(-POSITIVE_INFINITY), 0U);
}

// Numbers as records, by their upper half and then by all of their bits.
struct NumberKeys {
    static constexpr int NUMBER_OF_KEYS = 2;

    static KeyBounds getBounds() { return {0, std::numeric_limits<std::uint32_t>::max()}; }

    template <int KEY>
    static std::uint64_t getKey(std::uint64_t number) {
        constexpr int HALF_BITS = 32;
        return KEY == 0 ? number >> HALF_BITS : number;
    }
    static bool precedes(std::uint64_t a, std::uint64_t b) { return a < b; }
};

// Collects where they stand what the visitor gets.
void sortByVisits(std::vector<std::uint64_t>& numbers) {
    // Too large for a small stack.
    const auto sorter = std::make_unique<BucketSorter<std::uint64_t, NumberKeys>>(numbers.size());
    std::size_t visits = 0;
    sorter->visitInOrder(numbers.data(), numbers.size(), NumberKeys(),
                         [&](std::uint64_t number) { numbers[visits++] = number; });
    EXPECT_EQ(visits, numbers.size());
}

TEST(BucketSorter, sortsLikeTheStandardSort) {
    RandomSource random(3);
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        const int count = round < 20 ? random.below(200) : random.below(50000);
        // From all bits in use down to very few different numbers.
        const int droppedBits = round % 64;
        std::vector<std::uint64_t> numbers;
        for (int number = 0; number < count; ++number) {
            const auto upper = static_cast<std::uint64_t>(random.below(1 << 30)) << 34U;
            const auto lower = static_cast<std::uint64_t>(random.below(1 << 30)) << 4U;
            numbers.push_back((upper ^ lower) >> droppedBits);
        }
        std::vector<std::uint64_t> expected = numbers;
        std::sort(expected.begin(), expected.end());
        sortByVisits(numbers);
        EXPECT_EQ(numbers, expected);
    }
}

// Each number halves the range that is left: the most levels that there can be.
TEST(BucketSorter, sortsWhatFallsIntoOneBucketAgainAndAgain) {
    std::vector<std::uint64_t> numbers;
    for (int copy = 0; copy < 1000; ++copy) {
        for (int bit = 0; bit < 64; ++bit)
            numbers.push_back(std::uint64_t{1} << ((bit * 37 + copy) % 64));
    }
    std::vector<std::uint64_t> expected = numbers;
    std::sort(expected.begin(), expected.end());
    sortByVisits(numbers);
    EXPECT_EQ(numbers, expected);
}

}  // namespace

}  // namespace obj_adapter::test
