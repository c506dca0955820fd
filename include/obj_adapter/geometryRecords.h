// The plain records of the mesh: vertices, normals, texture points and faces.
//
// Hosts read them through the pointers that ObjConverter hands out, and compile
// their layout in: fields, order and widths below are part of the interface.
// Everything here is inline, so nothing of it is an exported symbol.
//
// Coordinates are doubles in the units of the file. Indices are zero-based
// positions in the model's tables; NO_INDEX stands for "none".
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace obj_adapter {

// The index that names no record.
constexpr std::int32_t NO_INDEX = -1;

// Every face is a triangle.
constexpr int CORNERS_PER_FACE = 3;

// A geometric vertex: v x y z [w].
struct Vertex {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 1.0;                 // weight; 1 unless the file gives one
    std::int32_t index = NO_INDEX;  // position in the vertex table

    Vertex() = default;
    Vertex(double xCoordinate, double yCoordinate, double zCoordinate) noexcept
        : x(xCoordinate), y(yCoordinate), z(zCoordinate) {}

    // Same position: x, y and z are equal; w and index are not looked at. There
    // is no tolerance. A coordinate that is not a number equals every other.
    bool operator==(const Vertex& other) const noexcept {
        return !differs(x, other.x) && !differs(y, other.y) && !differs(z, other.z);
    }

    // Order by x, then y, then z; w and index are not looked at. A coordinate
    // that is not a number counts as less, on either side: with one of those in
    // the table this is no ordering that a sort may rely on.
    bool operator<(const Vertex& other) const noexcept {
        if (!(x >= other.x))
            return true;
        if (differs(x, other.x))
            return false;
        if (!(y >= other.y))
            return true;
        if (differs(y, other.y))
            return false;
        return !(z >= other.z);
    }

private:
    static bool differs(double a, double b) noexcept { return a < b || a > b; }
};

// A vertex normal as the file gives it, not normalised: vn x y z.
struct NormalPoint {
    double x;                       // not set by the default constructor
    double y;                       // not set
    double z;                       // not set
    std::int32_t index = NO_INDEX;  // position in the normal table

    // Leaves the components unset on purpose: every statement supplies them.
    NormalPoint() noexcept {}  // NOLINT(modernize-use-equals-default)
};

// A texture coordinate: vt u v [w].
struct TexturePoint {
    double u;                       // not set by the default constructor
    double v;                       // not set
    double w = 0.0;                 // 0 unless the file gives a third coordinate
    std::int32_t index = NO_INDEX;  // position in the texture-point table

    // Leaves u and v unset on purpose: every statement supplies them.
    TexturePoint() noexcept {}  // NOLINT(modernize-use-equals-default)
};

// One corner of a face: positions in the vertex, texture-point and normal
// tables, each NO_INDEX where the corner has none.
struct FaceElement {
    std::int32_t vertexIndex = NO_INDEX;
    std::int32_t textureIndex = NO_INDEX;
    std::int32_t normalIndex = NO_INDEX;

    int getVertexIndex() const noexcept { return vertexIndex; }
    int getTextureIndex() const noexcept { return textureIndex; }
    int getNormalIndex() const noexcept { return normalIndex; }

    void setVertexIndex(int value) noexcept { vertexIndex = value; }
    void setTextureIndex(int value) noexcept { textureIndex = value; }
    void setNormalIndex(int value) noexcept { normalIndex = value; }
};

// A triangle. Its corners stand in the order of the file, so the winding is the
// file's.
struct Face {
    FaceElement elements[CORNERS_PER_FACE];

    // The corners' vertex indices in ascending order, for comparing faces.
    // Meaningful only while sortedKeyValid is set.
    mutable std::int32_t sortedVertexIndices[CORNERS_PER_FACE] = {NO_INDEX, NO_INDEX, NO_INDEX};
    mutable bool sortedKeyValid = false;

    std::int32_t materialIndex = NO_INDEX;  // position in the material table
    std::int32_t groupIndex = NO_INDEX;     // position in the group table

    // Corner 0, 1 or 2 for reading and writing; the index is not checked. Counts
    // as a change of the corner, so that the next comparison sorts again.
    FaceElement& getElement(int corner) noexcept {
        sortedKeyValid = false;
        return elements[corner];
    }

    int getMaterialIndex() const noexcept { return materialIndex; }
    void setMaterialIndex(int value) noexcept { materialIndex = value; }

    // True only if all three corners have one.
    bool hasNormals() const noexcept {
        return elements[0].normalIndex != NO_INDEX && elements[1].normalIndex != NO_INDEX &&
               elements[2].normalIndex != NO_INDEX;
    }
    bool hasTextures() const noexcept {
        return elements[0].textureIndex != NO_INDEX && elements[1].textureIndex != NO_INDEX &&
               elements[2].textureIndex != NO_INDEX;
    }

    // Puts the corner into the first place whose vertex index is NO_INDEX. Only
    // that index decides: a corner without a vertex leaves its place free.
    //
    // Throws std::runtime_error "Face cannot have fourth element" when there is
    // no free place.
    void addElement(const FaceElement& element) {
        sortedKeyValid = false;
        for (FaceElement& place : elements) {
            if (place.vertexIndex == NO_INDEX) {
                place = element;
                return;
            }
        }
        throw std::runtime_error("Face cannot have fourth element");
    }

    // Order by the ascending triple of vertex indices, as signed numbers. Faces
    // over the same three vertices are equivalent whatever their winding.
    bool operator<(const Face& other) const noexcept {
        refreshSortedKey();
        other.refreshSortedKey();
        for (int place = 0; place < CORNERS_PER_FACE; ++place) {
            if (sortedVertexIndices[place] != other.sortedVertexIndices[place])
                return sortedVertexIndices[place] < other.sortedVertexIndices[place];
        }
        return false;
    }

    // Brings sortedVertexIndices up to date if a corner may have changed.
    void refreshSortedKey() const noexcept {
        if (sortedKeyValid)
            return;
        std::int32_t low = elements[0].vertexIndex;
        std::int32_t middle = elements[1].vertexIndex;
        std::int32_t high = elements[2].vertexIndex;
        if (middle < low)
            std::swap(low, middle);
        if (high < middle)
            std::swap(middle, high);
        if (middle < low)
            std::swap(low, middle);
        sortedVertexIndices[0] = low;
        sortedVertexIndices[1] = middle;
        sortedVertexIndices[2] = high;
        sortedKeyValid = true;
    }
};

// Hosts compile these layouts in; a change here breaks them.
static_assert(sizeof(Vertex) == 40 && offsetof(Vertex, x) == 0 && offsetof(Vertex, y) == 8 &&
                  offsetof(Vertex, z) == 16 && offsetof(Vertex, w) == 24 &&
                  offsetof(Vertex, index) == 32,
              "the layout of Vertex is part of the interface");
static_assert(sizeof(NormalPoint) == 32 && offsetof(NormalPoint, x) == 0 &&
                  offsetof(NormalPoint, y) == 8 && offsetof(NormalPoint, z) == 16 &&
                  offsetof(NormalPoint, index) == 24,
              "the layout of NormalPoint is part of the interface");
static_assert(sizeof(TexturePoint) == 32 && offsetof(TexturePoint, u) == 0 &&
                  offsetof(TexturePoint, v) == 8 && offsetof(TexturePoint, w) == 16 &&
                  offsetof(TexturePoint, index) == 24,
              "the layout of TexturePoint is part of the interface");
static_assert(sizeof(FaceElement) == 12 && offsetof(FaceElement, vertexIndex) == 0 &&
                  offsetof(FaceElement, textureIndex) == 4 &&
                  offsetof(FaceElement, normalIndex) == 8,
              "the layout of FaceElement is part of the interface");
static_assert(sizeof(Face) == 60 && offsetof(Face, elements) == 0 &&
                  offsetof(Face, sortedVertexIndices) == 36 &&
                  offsetof(Face, sortedKeyValid) == 48 && offsetof(Face, materialIndex) == 52 &&
                  offsetof(Face, groupIndex) == 56,
              "the layout of Face is part of the interface");
static_assert(std::is_trivially_copyable<Vertex>::value &&
                  std::is_trivially_copyable<NormalPoint>::value &&
                  std::is_trivially_copyable<TexturePoint>::value &&
                  std::is_trivially_copyable<FaceElement>::value &&
                  std::is_trivially_copyable<Face>::value,
              "tables of records are copied as bytes");

}  // namespace obj_adapter
