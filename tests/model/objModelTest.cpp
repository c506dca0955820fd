// The model's add operations, and that they do all or nothing when memory runs
// out.
#include "model/objModel.h"

#include "groups/groupTable.h"
#include "support/countedMemory.h"
#include "support/describe.h"
#include "support/modelView.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>

namespace obj_adapter::test {

namespace {

Face faceOf(int first, int second, int third) {
    Face face;
    face.elements[0].vertexIndex = first;
    face.elements[1].vertexIndex = second;
    face.elements[2].vertexIndex = third;
    return face;
}

std::string describeModel(ObjModel& model) {
    const ModelView view = viewOfModel(model);
    return "faces " + describeFaces(view) + "; groups " + describeGroups(view) + "; vertices " +
           describeVertices(view) + "; hierarchy " + (model.hierarchyValid ? "valid" : "not valid");
}

}  // namespace

TEST(ObjModel, freshModelIsEmpty) {
    const ObjModel model;
    EXPECT_EQ(model.name, "Obj File");
    EXPECT_FALSE(model.hierarchyValid);
    EXPECT_TRUE(model.hasConflictingFaces);
    EXPECT_EQ(model.getNumberOfGroups(), 0);
    EXPECT_EQ(model.getNumberOfFaces(), 0);
    EXPECT_EQ(model.getNumberOfVertices(), 0);
    EXPECT_EQ(model.getNumberOfTexturePoints(), 0);
    EXPECT_EQ(model.getNumberOfNormalPoints(), 0);
    EXPECT_EQ(model.hierarchy, nullptr);
}

TEST(ObjModel, addedVertexLearnsItsPosition) {
    ObjModel model;
    Vertex first(1, 2, 3);
    first.w = 0.5;
    first.index = 99;
    Vertex second(4, 5, 6);
    EXPECT_EQ(model.addVertex(first), 0);
    EXPECT_EQ(model.addVertex(second), 1);
    EXPECT_EQ(first.index, 0);
    EXPECT_EQ(second.index, 1);
    EXPECT_EQ(model.addVertex(first), 2);
    EXPECT_EQ(first.index, 2);
    EXPECT_EQ(describeVertices(viewOfModel(model)), "(1 2 3 w0.5) (4 5 6 w1) (1 2 3 w0.5)");
    ASSERT_EQ(model.getNumberOfVertices(), 3);
    EXPECT_EQ(model.vertices[0].index, 0);
    EXPECT_EQ(model.vertices[1].index, 1);
    EXPECT_EQ(model.vertices[2].index, 2);
}

TEST(ObjModel, addedTexturePointLearnsItsPosition) {
    ObjModel model;
    TexturePoint texturePoint;
    texturePoint.u = 0.25;
    texturePoint.v = 0.5;
    texturePoint.w = 0.75;
    EXPECT_EQ(model.addTexturePoint(texturePoint), 0);
    texturePoint.u = 1;
    EXPECT_EQ(model.addTexturePoint(texturePoint), 1);
    EXPECT_EQ(texturePoint.index, 1);
    EXPECT_EQ(describeTexturePoints(viewOfModel(model)), "(0.25 0.5 w0.75) (1 0.5 w0.75)");
    ASSERT_EQ(model.getNumberOfTexturePoints(), 2);
    EXPECT_EQ(model.texturePoints[0].index, 0);
    EXPECT_EQ(model.texturePoints[1].index, 1);
}

TEST(ObjModel, addedNormalPointLearnsItsPosition) {
    ObjModel model;
    NormalPoint normalPoint;
    normalPoint.x = 1;
    normalPoint.y = 0;
    normalPoint.z = -1;
    EXPECT_EQ(model.addNormalPoint(normalPoint), 0);
    normalPoint.y = 2;
    EXPECT_EQ(model.addNormalPoint(normalPoint), 1);
    EXPECT_EQ(normalPoint.index, 1);
    EXPECT_EQ(describeNormalPoints(viewOfModel(model)), "(1 0 -1) (1 2 -1)");
    ASSERT_EQ(model.getNumberOfNormalPoints(), 2);
    EXPECT_EQ(model.normalPoints[0].index, 0);
    EXPECT_EQ(model.normalPoints[1].index, 1);
}

TEST(ObjModel, addedFaceJoinsNoGroup) {
    ObjModel model;
    addGroup(model, "wheel");
    model.hierarchyValid = true;
    Face face = faceOf(0, 1, 2);
    face.setMaterialIndex(3);
    EXPECT_EQ(model.addFace(face), 0);
    EXPECT_EQ(model.addFace(faceOf(3, 4, 5)), 1);
    EXPECT_EQ(describeModel(model),
              "faces [0 1 2 m3] [3 4 5]; groups wheel:; vertices ; hierarchy valid");
    EXPECT_EQ(model.faces[0].groupIndex, NO_INDEX);
}

TEST(ObjModel, faceJoinsTheLastGroup) {
    ObjModel model;
    addGroup(model, "body");
    addGroup(model, "wheel");
    model.addFace(faceOf(0, 1, 2));
    model.addFace(faceOf(3, 4, 5));
    model.hierarchyValid = true;
    model.addFaceToCurrentGroup(1);
    EXPECT_FALSE(model.hierarchyValid);
    EXPECT_EQ(model.faces[0].groupIndex, NO_INDEX);
    EXPECT_EQ(model.faces[1].groupIndex, 1);

    addGroup(model, "door");
    model.addFaceToCurrentGroup(0);
    EXPECT_EQ(model.faces[0].groupIndex, 2);
    EXPECT_EQ(describeGroups(viewOfModel(model)), "body:; wheel: 1; door: 0");
}

TEST(ObjModel, faceAddedInCurrentGroupIsInTableAndGroup) {
    ObjModel model;
    addGroup(model, "body");
    addGroup(model, "wheel");
    model.hierarchyValid = true;
    EXPECT_EQ(model.addFaceInCurrentGroup(faceOf(0, 1, 2)), 0);
    EXPECT_FALSE(model.hierarchyValid);
    EXPECT_EQ(model.addFaceInCurrentGroup(faceOf(2, 1, 3)), 1);
    addGroup(model, "door");
    EXPECT_EQ(model.addFaceInCurrentGroup(faceOf(4, 5, 6)), 2);
    EXPECT_EQ(describeModel(model),
              "faces [0 1 2] [2 1 3] [4 5 6]; groups body:; wheel: 0 1; door: 2; vertices ; "
              "hierarchy not valid");
    EXPECT_EQ(model.faces[0].groupIndex, 1);
    EXPECT_EQ(model.faces[1].groupIndex, 1);
    EXPECT_EQ(model.faces[2].groupIndex, 2);
}

// Growing moves the table from under the record that is being copied.
TEST(ObjModel, recordOfTheTableItselfCanBeAddedAgain) {
    ObjModel model;
    addGroup(model, "body");
    Vertex vertex(7, 8, 9);
    model.addVertex(vertex);
    model.addFaceInCurrentGroup(faceOf(1, 2, 3));
    for (int count = 1; count < 100; ++count) {
        model.addFaceInCurrentGroup(model.faces.front());
        model.addVertex(model.vertices.back());
    }
    ASSERT_EQ(model.getNumberOfFaces(), 100);
    ASSERT_EQ(model.getNumberOfVertices(), 100);
    for (const Face& face : model.faces) {
        EXPECT_EQ(face.elements[0].vertexIndex, 1);
        EXPECT_EQ(face.elements[1].vertexIndex, 2);
        EXPECT_EQ(face.elements[2].vertexIndex, 3);
        EXPECT_EQ(face.groupIndex, 0);
    }
    for (const Vertex& added : model.vertices)
        EXPECT_TRUE(added == Vertex(7, 8, 9));
    EXPECT_EQ(model.vertices.back().index, 99);
}

TEST(ObjModel, growingTakesFewAllocations) {
    ObjModel model;
    addGroup(model, "body");
    const std::size_t before = getNumberOfAllocations();
    constexpr int FACE_COUNT = 100000;
    for (int face = 0; face < FACE_COUNT; ++face)
        model.addFaceInCurrentGroup(faceOf(face, face + 1, face + 2));
    EXPECT_EQ(model.getNumberOfFaces(), FACE_COUNT);
    EXPECT_EQ(model.groups[0].faceIndices.back(), FACE_COUNT - 1);
    // Twice some seventeen doublings; other libraries grow by halves.
    EXPECT_LT(getNumberOfAllocations() - before, 100U);
}

// Tables of every small size, so that each of the two is full or not, and every
// number of allocations that succeed before one fails.
TEST(ObjModel, faceIsAddedWhollyOrNotAtAll) {
    int failureCount = 0;
    for (int size = 0; size <= 17; ++size) {
        for (int spareFaces = 0; spareFaces < 2; ++spareFaces) {
            for (int successes = 0; successes < 3; ++successes) {
                SCOPED_TRACE(testing::Message() << size << " faces, " << spareFaces << " spare, "
                                                << successes << " allocations");
                ObjModel model;
                addGroup(model, "body");
                for (int face = 0; face < size; ++face)
                    model.addFaceInCurrentGroup(faceOf(face, face + 1, face + 2));
                if (spareFaces != 0)
                    model.faces.reserve(model.faces.size() + 1);
                model.hierarchyValid = true;
                const std::string before = describeModel(model);

                const Face added = faceOf(7, 8, 9);
                bool hasFailed = false;
                int position = NO_INDEX;
                try {
                    const AllocationBudget budget(successes);
                    position = model.addFaceInCurrentGroup(added);
                } catch (const std::bad_alloc&) {
                    hasFailed = true;
                }
                if (hasFailed) {
                    ++failureCount;
                    EXPECT_EQ(describeModel(model), before);
                }
                if (!hasFailed) {
                    EXPECT_EQ(position, size);
                    EXPECT_FALSE(model.hierarchyValid);
                }
                const int expectedCount = hasFailed ? size : size + 1;
                EXPECT_EQ(model.getNumberOfFaces(), expectedCount);
                ASSERT_EQ(model.groups[0].faceIndices.size(),
                          static_cast<std::size_t>(expectedCount));
                for (int face = 0; face < expectedCount; ++face)
                    EXPECT_EQ(model.groups[0].faceIndices[static_cast<std::size_t>(face)], face);
            }
        }
    }
    EXPECT_GT(failureCount, 10);
}

TEST(ObjModel, pointTablesAreUnchangedWhenMemoryRunsOut) {
    ObjModel model;
    Vertex vertex(1, 2, 3);
    TexturePoint texturePoint;
    texturePoint.u = 4;
    texturePoint.v = 5;
    NormalPoint normalPoint;
    normalPoint.x = 6;
    normalPoint.y = 7;
    normalPoint.z = 8;
    model.addVertex(vertex);
    model.addTexturePoint(texturePoint);
    model.addNormalPoint(normalPoint);
    model.vertices.shrink_to_fit();
    model.texturePoints.shrink_to_fit();
    model.normalPoints.shrink_to_fit();
    {
        const AllocationBudget budget(0);
        EXPECT_THROW(model.addVertex(vertex), std::bad_alloc);
        EXPECT_THROW(model.addTexturePoint(texturePoint), std::bad_alloc);
        EXPECT_THROW(model.addNormalPoint(normalPoint), std::bad_alloc);
        EXPECT_THROW(model.addFace(Face()), std::bad_alloc);
    }
    const ModelView view = viewOfModel(model);
    EXPECT_EQ(describeVertices(view), "(1 2 3 w1)");
    EXPECT_EQ(describeTexturePoints(view), "(4 5 w0)");
    EXPECT_EQ(describeNormalPoints(view), "(6 7 8)");
    EXPECT_EQ(model.getNumberOfFaces(), 0);
    EXPECT_EQ(model.addVertex(vertex), 1);
}

TEST(ObjModel, faceTableIsUnchangedWhenItsGroupCannotGrow) {
    ObjModel model;
    addGroup(model, "body");
    model.addFace(faceOf(0, 1, 2));
    model.hierarchyValid = true;
    {
        const AllocationBudget budget(0);
        EXPECT_THROW(model.addFaceToCurrentGroup(0), std::bad_alloc);
    }
    EXPECT_EQ(describeModel(model), "faces [0 1 2]; groups body:; vertices ; hierarchy valid");
    EXPECT_EQ(model.faces[0].groupIndex, NO_INDEX);
}

}  // namespace obj_adapter::test
