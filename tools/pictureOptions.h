// What a picture of a model is to look like.
#pragma once

#include <cstdint>
#include <optional>

namespace obj_adapter::tool {

enum class UpAxis { Y, Z };

// Of a picture; 255 is opaque.
struct PixelColor {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;
};

struct PictureOptions {
    int width = 960;
    int height = 720;
    int samples = 3;  // in each direction of a pixel
    UpAxis up = UpAxis::Y;

    // Where the camera stands, in degrees: around the up axis, from the front to
    // the right, and above the horizon.
    double azimuth = 35.0;
    double elevation = 22.0;

    // Faces without normals are shown smooth over edges of at most this angle.
    double creaseAngle = 40.0;

    PixelColor background{222, 227, 234, 255};
};

}  // namespace obj_adapter::tool
