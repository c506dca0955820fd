// The plain records: defaults, comparisons, corners and their memory layout.
#include <obj_adapter/geometryRecords.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace obj_adapter::test {

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

FaceElement cornerOf(int vertexIndex, int textureIndex = NO_INDEX, int normalIndex = NO_INDEX) {
    FaceElement corner;
    corner.setVertexIndex(vertexIndex);
    corner.setTextureIndex(textureIndex);
    corner.setNormalIndex(normalIndex);
    return corner;
}

Face faceOf(int first, int second, int third) {
    Face face;
    face.addElement(cornerOf(first));
    face.addElement(cornerOf(second));
    face.addElement(cornerOf(third));
    return face;
}

bool areEquivalent(const Face& a, const Face& b) {
    return !(a < b) && !(b < a);
}

std::string verticesOf(const Face& face) {
    return std::to_string(face.elements[0].vertexIndex) + " " +
           std::to_string(face.elements[1].vertexIndex) + " " +
           std::to_string(face.elements[2].vertexIndex);
}

}  // namespace

TEST(GeometryRecords, freshVertexIsTheOriginWithWeightOne) {
    const Vertex vertex;
    EXPECT_EQ(vertex.x, 0.0);
    EXPECT_EQ(vertex.y, 0.0);
    EXPECT_EQ(vertex.z, 0.0);
    EXPECT_EQ(vertex.w, 1.0);
    EXPECT_EQ(vertex.index, -1);
}

TEST(GeometryRecords, vertexFromThreeCoordinatesHasWeightOne) {
    const Vertex vertex(1.5, -2.5, 3.5);
    EXPECT_EQ(vertex.x, 1.5);
    EXPECT_EQ(vertex.y, -2.5);
    EXPECT_EQ(vertex.z, 3.5);
    EXPECT_EQ(vertex.w, 1.0);
    EXPECT_EQ(vertex.index, -1);
}

TEST(GeometryRecords, freshTexturePointHasThirdCoordinateZero) {
    const TexturePoint texturePoint;
    EXPECT_EQ(texturePoint.w, 0.0);
    EXPECT_EQ(texturePoint.index, -1);
}

TEST(GeometryRecords, freshNormalPointHasNoIndex) {
    const NormalPoint normalPoint;
    EXPECT_EQ(normalPoint.index, -1);
}

TEST(GeometryRecords, freshFaceNamesNothing) {
    const Face face;
    for (const FaceElement& corner : face.elements) {
        EXPECT_EQ(corner.getVertexIndex(), -1);
        EXPECT_EQ(corner.getTextureIndex(), -1);
        EXPECT_EQ(corner.getNormalIndex(), -1);
    }
    EXPECT_FALSE(face.sortedKeyValid);
    EXPECT_EQ(face.getMaterialIndex(), -1);
}

TEST(GeometryRecords, assignmentCopiesEveryFieldOfAVertex) {
    Vertex source(1, 2, 3);
    source.w = 4;
    source.index = 5;
    Vertex copied;
    copied = source;
    Vertex moved;
    moved = std::move(source);
    for (const Vertex& target : {copied, moved}) {
        EXPECT_EQ(target.x, 1.0);
        EXPECT_EQ(target.y, 2.0);
        EXPECT_EQ(target.z, 3.0);
        EXPECT_EQ(target.w, 4.0);
        EXPECT_EQ(target.index, 5);
    }
}

TEST(GeometryRecords, assignmentCopiesEveryFieldOfANormalPoint) {
    NormalPoint source;
    source.x = 1;
    source.y = 2;
    source.z = 3;
    source.index = 4;
    NormalPoint copied;
    copied = source;
    NormalPoint moved;
    moved = std::move(source);
    for (const NormalPoint& target : {copied, moved}) {
        EXPECT_EQ(target.x, 1.0);
        EXPECT_EQ(target.y, 2.0);
        EXPECT_EQ(target.z, 3.0);
        EXPECT_EQ(target.index, 4);
    }
}

TEST(GeometryRecords, assignmentCopiesEveryFieldOfATexturePoint) {
    TexturePoint source;
    source.u = 1;
    source.v = 2;
    source.w = 3;
    source.index = 4;
    TexturePoint copied;
    copied = source;
    TexturePoint moved;
    moved = std::move(source);
    for (const TexturePoint& target : {copied, moved}) {
        EXPECT_EQ(target.u, 1.0);
        EXPECT_EQ(target.v, 2.0);
        EXPECT_EQ(target.w, 3.0);
        EXPECT_EQ(target.index, 4);
    }
}

TEST(GeometryRecords, weightAndIndexOfAVertexAreNotCompared) {
    Vertex a(1, 2, 3);
    Vertex b(1, 2, 3);
    b.w = 0.25;
    b.index = 7;
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(b == a);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(b < a);
}

// Every pair of vertices from these coordinates, against the order of tuples.
TEST(GeometryRecords, verticesOrderByXThenYThenZ) {
    const double coordinates[] = {-INFINITE, -1.0, -5e-324, -0.0, 0.0, 5e-324, 1.0, INFINITE};
    std::vector<Vertex> vertices;
    for (const double x : coordinates)
        for (const double y : coordinates)
            for (const double z : coordinates)
                vertices.emplace_back(x, y, z);

    for (const Vertex& a : vertices) {
        for (const Vertex& b : vertices) {
            ASSERT_EQ(a == b, std::tie(a.x, a.y, a.z) == std::tie(b.x, b.y, b.z))
                << a.x << " " << a.y << " " << a.z << " and " << b.x << " " << b.y << " " << b.z;
            ASSERT_EQ(a < b, std::tie(a.x, a.y, a.z) < std::tie(b.x, b.y, b.z))
                << a.x << " " << a.y << " " << a.z << " and " << b.x << " " << b.y << " " << b.z;
        }
    }
}

struct NotANumberCase {
    const char* title;
    Vertex a;
    Vertex b;
    bool isEqual;
    bool isLess;     // a < b
    bool isGreater;  // b < a
};

TEST(GeometryRecords, coordinateThatIsNoNumberIsEqualAndLess) {
    const NotANumberCase CASES[] = {
        {"x of the left side", {NOT_A_NUMBER, 2, 3}, {1, 2, 3}, true, true, true},
        {"x of both sides", {NOT_A_NUMBER, 2, 3}, {NOT_A_NUMBER, 2, 3}, true, true, true},
        {"y", {1, NOT_A_NUMBER, 3}, {1, 2, 3}, true, true, true},
        {"z", {1, 2, NOT_A_NUMBER}, {1, 2, 3}, true, true, true},
        {"all of them", {NOT_A_NUMBER, NOT_A_NUMBER, NOT_A_NUMBER}, {1, 2, 3}, true, true, true},
        {"x, and another y", {NOT_A_NUMBER, 9, 3}, {1, 2, 3}, false, true, true},
        {"x, and another z", {NOT_A_NUMBER, 2, 9}, {1, 2, 3}, false, true, true},
        {"y behind a smaller x", {0, NOT_A_NUMBER, 3}, {1, 2, 3}, false, true, false},
        {"y behind a greater x", {9, NOT_A_NUMBER, 3}, {1, 2, 3}, false, false, true},
        {"z behind a smaller y", {1, 0, NOT_A_NUMBER}, {1, 2, 3}, false, true, false},
        {"z behind a greater y", {1, 9, NOT_A_NUMBER}, {1, 2, 3}, false, false, true},
        {"against infinity", {NOT_A_NUMBER, 0, 0}, {-INFINITE, 0, 0}, true, true, true},
    };
    for (const NotANumberCase& row : CASES) {
        SCOPED_TRACE(row.title);
        EXPECT_EQ(row.a == row.b, row.isEqual);
        EXPECT_EQ(row.b == row.a, row.isEqual);
        EXPECT_EQ(row.a < row.b, row.isLess);
        EXPECT_EQ(row.b < row.a, row.isGreater);
    }
}

TEST(GeometryRecords, vertexThatIsNoNumberIsLessThanItself) {
    const Vertex vertex(NOT_A_NUMBER, 0, 0);
    const Vertex& same = vertex;
    EXPECT_TRUE(vertex == same);
    EXPECT_TRUE(vertex < same);
}

TEST(GeometryRecords, cornerKeepsItsThreeIndices) {
    FaceElement corner;
    corner.setVertexIndex(2147483647);
    corner.setTextureIndex(0);
    corner.setNormalIndex(-2147483647 - 1);
    EXPECT_EQ(corner.getVertexIndex(), 2147483647);
    EXPECT_EQ(corner.getTextureIndex(), 0);
    EXPECT_EQ(corner.getNormalIndex(), -2147483647 - 1);
}

TEST(GeometryRecords, cornersFillAFaceInOrder) {
    Face face;
    face.addElement(cornerOf(7, 8, 9));
    EXPECT_EQ(verticesOf(face), "7 -1 -1");
    face.addElement(cornerOf(5));
    EXPECT_EQ(verticesOf(face), "7 5 -1");
    face.addElement(cornerOf(6, 1, 2));
    EXPECT_EQ(verticesOf(face), "7 5 6");
    EXPECT_EQ(face.getElement(0).getTextureIndex(), 8);
    EXPECT_EQ(face.getElement(0).getNormalIndex(), 9);
    EXPECT_EQ(face.getElement(1).getTextureIndex(), -1);
    EXPECT_EQ(face.getElement(1).getNormalIndex(), -1);
    EXPECT_EQ(face.getElement(2).getTextureIndex(), 1);
    EXPECT_EQ(face.getElement(2).getNormalIndex(), 2);
}

TEST(GeometryRecords, fourthCornerIsRefused) {
    Face face = faceOf(4, 5, 6);
    for (const int vertexIndex : {7, -1}) {
        try {
            face.addElement(cornerOf(vertexIndex));
            FAIL() << "a fourth corner was taken";
        } catch (const std::runtime_error& failure) {
            EXPECT_STREQ(failure.what(), "Face cannot have fourth element");
        }
        EXPECT_EQ(verticesOf(face), "4 5 6");
    }
}

TEST(GeometryRecords, cornerWithoutVertexLeavesItsPlaceFree) {
    Face face;
    face.addElement(cornerOf(1));
    face.addElement(cornerOf(-1, 3, 4));
    EXPECT_EQ(verticesOf(face), "1 -1 -1");
    EXPECT_EQ(face.getElement(1).getTextureIndex(), 3);
    face.addElement(cornerOf(2));
    face.addElement(cornerOf(3));
    EXPECT_EQ(verticesOf(face), "1 2 3");
    EXPECT_EQ(face.getElement(1).getTextureIndex(), -1);
}

TEST(GeometryRecords, freePlaceBetweenTakenOnesIsFilledFirst) {
    Face face = faceOf(1, 2, 3);
    face.getElement(1).setVertexIndex(NO_INDEX);
    face.addElement(cornerOf(9));
    EXPECT_EQ(verticesOf(face), "1 9 3");
}

// Only NO_INDEX is free: an index that is out of every table takes its place.
TEST(GeometryRecords, otherNegativeVertexIndexTakesItsPlace) {
    Face face;
    face.addElement(cornerOf(-2));
    face.addElement(cornerOf(1));
    EXPECT_EQ(verticesOf(face), "-2 1 -1");
}

TEST(GeometryRecords, rotationsOfAFaceAreEquivalent) {
    const Face face = faceOf(1, 2, 3);
    EXPECT_TRUE(areEquivalent(face, faceOf(3, 1, 2)));
    EXPECT_TRUE(areEquivalent(face, faceOf(2, 3, 1)));
    EXPECT_TRUE(face < faceOf(1, 2, 4));
    EXPECT_FALSE(faceOf(1, 2, 4) < face);
}

TEST(GeometryRecords, reversedFacesAreEquivalent) {
    EXPECT_TRUE(areEquivalent(faceOf(1, 2, 3), faceOf(3, 2, 1)));
    EXPECT_TRUE(areEquivalent(faceOf(1, 2, 3), faceOf(1, 3, 2)));
    EXPECT_TRUE(areEquivalent(faceOf(1, 2, 3), faceOf(2, 1, 3)));
}

// All triples of a few indices, doubles and negative ones included.
TEST(GeometryRecords, facesOrderByTheirSortedVertexIndices) {
    const int indices[] = {-2147483647 - 1, -1, 0, 1, 2147483647};
    std::vector<Face> faces;
    std::vector<std::vector<int>> triples;
    for (const int a : indices) {
        for (const int b : indices) {
            for (const int c : indices) {
                Face face;
                face.getElement(0).setVertexIndex(a);
                face.getElement(1).setVertexIndex(b);
                face.getElement(2).setVertexIndex(c);
                faces.push_back(face);
                triples.push_back({a, b, c});
                std::sort(triples.back().begin(), triples.back().end());
            }
        }
    }
    for (std::size_t left = 0; left < faces.size(); ++left) {
        for (std::size_t right = 0; right < faces.size(); ++right) {
            ASSERT_EQ(faces[left] < faces[right], triples[left] < triples[right])
                << verticesOf(faces[left]) << " and " << verticesOf(faces[right]);
        }
    }
}

TEST(GeometryRecords, faceOrderLooksAtVertexIndicesAlone) {
    const Face plain = faceOf(1, 2, 3);
    Face dressed = faceOf(1, 2, 3);
    dressed.getElement(0).setTextureIndex(4);
    dressed.getElement(1).setNormalIndex(5);
    dressed.setMaterialIndex(6);
    dressed.groupIndex = 7;
    EXPECT_TRUE(areEquivalent(plain, dressed));

    const std::set<Face> faces = {plain, dressed, faceOf(3, 1, 2), faceOf(2, 3, 4)};
    EXPECT_EQ(faces.size(), 2U);
}

TEST(GeometryRecords, comparingFacesFillsBothCaches) {
    const Face a = faceOf(9, 4, 7);
    const Face b = faceOf(8, 8, 1);
    EXPECT_FALSE(a.sortedKeyValid);
    EXPECT_FALSE(b.sortedKeyValid);
    EXPECT_FALSE(a < b);
    EXPECT_TRUE(a.sortedKeyValid);
    EXPECT_TRUE(b.sortedKeyValid);
    EXPECT_EQ(a.sortedVertexIndices[0], 4);
    EXPECT_EQ(a.sortedVertexIndices[1], 7);
    EXPECT_EQ(a.sortedVertexIndices[2], 9);
    EXPECT_EQ(b.sortedVertexIndices[0], 1);
    EXPECT_EQ(b.sortedVertexIndices[1], 8);
    EXPECT_EQ(b.sortedVertexIndices[2], 8);
    EXPECT_EQ(verticesOf(a), "9 4 7");
}

TEST(GeometryRecords, cornerChangedThroughItsReferenceIsComparedAnew) {
    Face face = faceOf(1, 2, 3);
    const Face other = faceOf(1, 2, 4);
    EXPECT_TRUE(face < other);
    face.getElement(0).setVertexIndex(9);
    EXPECT_FALSE(face.sortedKeyValid);
    EXPECT_FALSE(face < other);
    EXPECT_TRUE(other < face);
}

TEST(GeometryRecords, addedCornerIsComparedAnew) {
    Face face;
    face.addElement(cornerOf(1));
    face.addElement(cornerOf(2));
    const Face other = faceOf(1, 2, 3);
    EXPECT_TRUE(face < other);  // -1 1 2
    face.addElement(cornerOf(9));
    EXPECT_FALSE(face.sortedKeyValid);
    EXPECT_TRUE(other < face);
}

TEST(GeometryRecords, refusedCornerStillMarksTheCacheStale) {
    Face face = faceOf(1, 2, 3);
    face.refreshSortedKey();
    EXPECT_THROW(face.addElement(cornerOf(4)), std::runtime_error);
    EXPECT_FALSE(face.sortedKeyValid);
}

struct AttributeCase {
    int first;
    int second;
    int third;
    bool isComplete;
};

const AttributeCase ATTRIBUTE_CASES[] = {
    {0, 1, 2, true},     {0, 0, 0, true},    {0, 1, -1, false},  {0, -1, 2, false},
    {-1, 1, 2, false},   {0, -1, -1, false}, {-1, 1, -1, false}, {-1, -1, 2, false},
    {-1, -1, -1, false}, {-2, 1, 2, true},
};

TEST(GeometryRecords, faceHasNormalsOnlyIfAllCornersHave) {
    for (const AttributeCase& row : ATTRIBUTE_CASES) {
        SCOPED_TRACE(testing::Message() << row.first << " " << row.second << " " << row.third);
        Face face = faceOf(0, 1, 2);
        face.getElement(0).setNormalIndex(row.first);
        face.getElement(1).setNormalIndex(row.second);
        face.getElement(2).setNormalIndex(row.third);
        EXPECT_EQ(face.hasNormals(), row.isComplete);
        EXPECT_FALSE(face.hasTextures());
    }
}

TEST(GeometryRecords, faceHasTexturesOnlyIfAllCornersHave) {
    for (const AttributeCase& row : ATTRIBUTE_CASES) {
        SCOPED_TRACE(testing::Message() << row.first << " " << row.second << " " << row.third);
        Face face = faceOf(0, 1, 2);
        face.getElement(0).setTextureIndex(row.first);
        face.getElement(1).setTextureIndex(row.second);
        face.getElement(2).setTextureIndex(row.third);
        EXPECT_EQ(face.hasTextures(), row.isComplete);
        EXPECT_FALSE(face.hasNormals());
    }
}

TEST(GeometryRecords, faceKeepsItsMaterialIndex) {
    Face face;
    face.setMaterialIndex(12);
    EXPECT_EQ(face.getMaterialIndex(), 12);
    EXPECT_EQ(face.materialIndex, 12);
}

// What a host that was compiled against these headers relies on: a value of its
// type, read at its offset of the bytes of a table.
template <typename Value, typename Record>
Value valueAt(const std::vector<Record>& table, std::size_t position, std::size_t stride,
              std::size_t offset) {
    Value value;
    std::memcpy(&value,
                reinterpret_cast<const unsigned char*>(table.data()) + position * stride + offset,
                sizeof(value));
    return value;
}

TEST(GeometryRecords, bytesOfAVertexTableAreAsHostsReadThem) {
    std::vector<Vertex> table(2, Vertex(1, 2, 3));
    table[1].w = 4;
    table[1].index = 5;
    EXPECT_EQ(valueAt<double>(table, 1, 40, 0), 1.0);
    EXPECT_EQ(valueAt<double>(table, 1, 40, 8), 2.0);
    EXPECT_EQ(valueAt<double>(table, 1, 40, 16), 3.0);
    EXPECT_EQ(valueAt<double>(table, 1, 40, 24), 4.0);
    EXPECT_EQ(valueAt<std::int32_t>(table, 1, 40, 32), 5);
}

TEST(GeometryRecords, bytesOfTheSmallerPointTablesAreAsHostsReadThem) {
    NormalPoint normalPoint;
    normalPoint.x = 1;
    normalPoint.y = 2;
    normalPoint.z = 3;
    normalPoint.index = 4;
    const std::vector<NormalPoint> normals(2, normalPoint);
    TexturePoint texturePoint;
    texturePoint.u = 5;
    texturePoint.v = 6;
    texturePoint.w = 7;
    texturePoint.index = 8;
    const std::vector<TexturePoint> textures(2, texturePoint);
    for (int field = 0; field < 3; ++field) {
        const std::size_t offset = static_cast<std::size_t>(field) * 8;
        EXPECT_EQ(valueAt<double>(normals, 1, 32, offset), 1.0 + field);
        EXPECT_EQ(valueAt<double>(textures, 1, 32, offset), 5.0 + field);
    }
    EXPECT_EQ(valueAt<std::int32_t>(normals, 1, 32, 24), 4);
    EXPECT_EQ(valueAt<std::int32_t>(textures, 1, 32, 24), 8);
}

TEST(GeometryRecords, bytesOfAFaceTableAreAsHostsReadThem) {
    Face face;
    face.addElement(cornerOf(19, 11, 12));
    face.addElement(cornerOf(18, 14, 15));
    face.addElement(cornerOf(17, 16, 13));
    face.setMaterialIndex(20);
    face.groupIndex = 21;
    face.refreshSortedKey();
    const std::vector<Face> table(2, face);
    const int expected[] = {19, 11, 12, 18, 14, 15, 17, 16, 13, 17, 18, 19};
    std::size_t offset = 0;
    for (const int value : expected) {
        EXPECT_EQ(valueAt<std::int32_t>(table, 1, 60, offset), value) << "offset " << offset;
        offset += 4;
    }
    EXPECT_TRUE(valueAt<bool>(table, 1, 60, 48));
    EXPECT_EQ(valueAt<std::int32_t>(table, 1, 60, 52), 20);
    EXPECT_EQ(valueAt<std::int32_t>(table, 1, 60, 56), 21);
}

static_assert(std::is_standard_layout_v<Vertex> && std::is_standard_layout_v<NormalPoint> &&
              std::is_standard_layout_v<TexturePoint> && std::is_standard_layout_v<FaceElement> &&
              std::is_standard_layout_v<Face>);
static_assert(std::is_trivially_copyable_v<Vertex> && std::is_trivially_copyable_v<NormalPoint> &&
              std::is_trivially_copyable_v<TexturePoint> &&
              std::is_trivially_copyable_v<FaceElement> && std::is_trivially_copyable_v<Face>);
static_assert(std::is_same_v<decltype(Vertex::index), std::int32_t>);
static_assert(std::is_same_v<decltype(std::declval<Face&>().getElement(0)), FaceElement&>);

}  // namespace obj_adapter::test
