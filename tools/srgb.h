// Between linear light and the values of a picture, by the curve of sRGB. Only
// basic arithmetic is used, so that a picture has the same bytes everywhere.
#pragma once

#include <cstdint>

namespace obj_adapter::tool {

// 0..255 to 0..1.
double decodeSrgb(double value);

// 0..1, clamped, to the nearest of 0..255.
std::uint8_t encodeSrgb(double linear);

}  // namespace obj_adapter::tool
