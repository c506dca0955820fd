// Internal: the order in which compaction sorts faces. Covered by
// tests/processing/compactionTest.cpp.
#pragma once

#include "processing/bucketSort.h"

#include <obj_adapter/geometryRecords.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace obj_adapter {

// The ascending triple of vertex indices, then the position that the face had
// when it was marked: Face::operator<, and the earlier of equivalent faces
// precedes. Has what BucketSorter needs.
//
// A face has no room for its position. While it is marked the position stands in
// the last place of the sorted vertex indices; that index is the greatest of the
// corners' and quickly found again.
class FaceOrder {
public:
    // Faces name vertices from 0 to vertexCount - 1.
    explicit FaceOrder(std::size_t vertexCount) noexcept : highestIndex(vertexCount) {}

    // From here to unmark the face's sorted vertex indices are no such indices.
    //
    // Sorts as Face::refreshSortedKey does, but without branches: which corner is the lowest
    // would have to be guessed.
    static void mark(Face& face, std::int32_t position) noexcept {
        const std::int32_t first = face.elements[0].vertexIndex;
        const std::int32_t second = face.elements[1].vertexIndex;
        const std::int32_t third = face.elements[2].vertexIndex;
        const std::int32_t lower = std::min(first, second);
        const std::int32_t upper = std::max(first, second);
        face.sortedVertexIndices[0] = std::min(lower, third);
        face.sortedVertexIndices[1] = std::max(lower, std::min(upper, third));
        face.sortedVertexIndices[POSITION] = position;
        face.sortedKeyValid = true;
    }

    static void unmark(Face& face) noexcept {
        face.sortedVertexIndices[POSITION] = getHighestVertexIndex(face);
    }

    static bool precedes(const Face& a, const Face& b) noexcept {
        const std::uint64_t keyOfA = getKey<0>(a);
        const std::uint64_t keyOfB = getKey<0>(b);
        return keyOfA != keyOfB ? keyOfA < keyOfB : getKey<1>(a) < getKey<1>(b);
    }

    static constexpr int NUMBER_OF_KEYS = 2;

    KeyBounds getBounds() const noexcept { return {0, highestIndex << INDEX_BITS}; }

    // Indices and positions are not negative.
    template <int KEY>
    static std::uint64_t getKey(const Face& face) noexcept {
        if constexpr (KEY == 0)
            return joinNumbers(face.sortedVertexIndices[0], face.sortedVertexIndices[1]);
        else
            return joinNumbers(getHighestVertexIndex(face), face.sortedVertexIndices[POSITION]);
    }

private:
    static constexpr int INDEX_BITS = 32;
    static constexpr int POSITION = CORNERS_PER_FACE - 1;

    static std::int32_t getHighestVertexIndex(const Face& face) noexcept {
        return std::max(std::max(face.elements[0].vertexIndex, face.elements[1].vertexIndex),
                        face.elements[2].vertexIndex);
    }

    static std::uint64_t joinNumbers(std::int32_t high, std::int32_t low) noexcept {
        return static_cast<std::uint64_t>(high) << INDEX_BITS | static_cast<std::uint64_t>(low);
    }

    std::uint64_t highestIndex;
};

}  // namespace obj_adapter
