// The extent of a model in each coordinate.
#pragma once

#include "modelAccess.h"

#include <limits>

namespace obj_adapter::tool {

// The extent in one coordinate. Comparisons with a NaN are false, so that one
// changes nothing.
struct Extent {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    void include(double value) {
        if (value < low)
            low = value;
        if (value > high)
            high = value;
    }
    bool isEmpty() const { return low > high; }
};

constexpr int AXIS_COUNT = 3;
constexpr const char* AXIS_NAMES[AXIS_COUNT] = {"x", "y", "z"};

// Of all vertices, used by a face or not.
struct BoundingBox {
    Extent extents[AXIS_COUNT];
    int notNumbers = 0;  // vertices with a coordinate that is not a number
};

inline BoundingBox computeBoundingBox(const ModelAccess& model) {
    BoundingBox box;
    for (int index = 0; index < model.getNumberOfVertices(); ++index) {
        const Vector3 position = model.getPosition(index);
        box.extents[0].include(position.x);
        box.extents[1].include(position.y);
        box.extents[2].include(position.z);
        if (std::isnan(position.x) || std::isnan(position.y) || std::isnan(position.z))
            ++box.notNumbers;
    }
    return box;
}

}  // namespace obj_adapter::tool
