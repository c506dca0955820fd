// Coordinates for formats that have single precision only.
#pragma once

#include "vector3.h"

#include <limits>

namespace obj_adapter::tool {

// Whether each coordinate becomes a finite float. The limit is the largest float
// itself: what lies beyond and would round to it is refused as well.
inline bool fitsSinglePrecision(const Vector3& a) {
    return largestCoordinate(a) <= static_cast<double>(std::numeric_limits<float>::max()) &&
           isFinite(a);
}

}  // namespace obj_adapter::tool
