// The light on a surface.
#pragma once

#include "materialLook.h"
#include "vector3.h"

namespace obj_adapter::tool {

// In linear light, from a key light above the camera's left shoulder, a weaker one
// from the right and light from all around.
//
// normal      to the side of the surface that is seen
// towardsEye  both of length 1, in the camera's coordinates
Vector3 shade(const MaterialLook& look, const Vector3& normal, const Vector3& towardsEye);

}  // namespace obj_adapter::tool
