// A shaded picture of a model.
#pragma once

#include "modelAccess.h"
#include "pictureOptions.h"

#include <cstdint>
#include <string>
#include <vector>

namespace obj_adapter::tool {

// Rows from the top, four bytes a pixel: red, green, blue, alpha.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> bytes;
};

// The same model and options give the same bytes on every platform: nothing in it
// but additions, products, quotients and square roots.
Picture drawPicture(const ModelAccess& model, const PictureOptions& options);

// As a PNG file.
std::string encodePng(const Picture& picture);

}  // namespace obj_adapter::tool
