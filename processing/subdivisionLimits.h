// Internal: the numbers that bound subdivision.
#pragma once

#include "model/recordLimits.h"

#include <cstddef>
#include <cstdint>

namespace obj_adapter {

// The low 32 bits of the product as a signed number: what the limits have always
// been compared with. Counts whose product does not fit wrap around.
constexpr std::int32_t wrappedProduct(std::int32_t factor, std::int32_t count) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(factor) *
                                     static_cast<std::uint32_t>(count));
}

// The number of faces after one more round.
constexpr std::int32_t nextFaceCount(std::int32_t faceCount) {
    return wrappedProduct(4, faceCount);
}

// About the number of vertices after one more round: an estimate by design, a
// round adds one for each edge.
constexpr std::int32_t nextVertexEstimate(std::int32_t vertexCount) {
    return wrappedProduct(2, vertexCount);
}

// Throws std::length_error when an int cannot count that many records.
inline void requireIndexable(std::size_t recordCount) {
    if (recordCount > 0)
        nextRecordIndex(recordCount - 1);
}

}  // namespace obj_adapter
