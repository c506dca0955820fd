// Internal: what a round of subdivision must know of all faces before it begins,
// gathered in a walk that looks at them anyway. Covered by
// tests/processing/subdivisionTest.cpp.
#pragma once

#include "model/objModel.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace obj_adapter {

// A negative index counts as a very large one.
inline bool isBelow(std::int32_t index, std::size_t count) noexcept {
    return static_cast<std::uint32_t>(index) < count;
}

// All three corners have a texture point, which is there: a host may have written
// any number into a face.
inline bool isTextured(const Face& face, std::size_t texturePointCount) noexcept {
    const auto& [a, b, c] = face.elements;
    return isBelow(a.textureIndex, texturePointCount) &&
           isBelow(b.textureIndex, texturePointCount) && isBelow(c.textureIndex, texturePointCount);
}

class FaceSurvey {
public:
    explicit FaceSurvey(const ObjModel& model)
        : vertexCount(model.vertices.size()),
          texturePointCount(model.texturePoints.size()),
          groupFaceCounts(model.groups.size()) {}

    // Before the first face of a walk.
    void restart() noexcept {
        texturedFaceCount = 0;
        groupFaceCounts.assign(groupFaceCounts.size(), 0);
    }

    // Throws std::out_of_range when a corner names a vertex that does not exist:
    // compaction leaves none, but the host runs at the messages between it and a
    // round, and may write into a face.
    void add(const Face& face) {
        const auto& [a, b, c] = face.elements;
        if (!isBelow(a.vertexIndex, vertexCount) || !isBelow(b.vertexIndex, vertexCount) ||
            !isBelow(c.vertexIndex, vertexCount))
            throw std::out_of_range("Face with a vertex that does not exist");
        if (isTextured(face, texturePointCount))
            ++texturedFaceCount;
        if (isBelow(face.groupIndex, groupFaceCounts.size()))
            ++groupFaceCounts[static_cast<std::size_t>(face.groupIndex)];
    }

    std::size_t getNumberOfTexturedFaces() const noexcept { return texturedFaceCount; }

    // Of each group, the faces that name it.
    const std::vector<std::size_t>& getGroupFaceCounts() const noexcept { return groupFaceCounts; }

private:
    const std::size_t vertexCount;
    const std::size_t texturePointCount;
    std::size_t texturedFaceCount = 0;
    std::vector<std::size_t> groupFaceCounts;
};

}  // namespace obj_adapter
