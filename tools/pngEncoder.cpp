// PNG by a library of one header. Covered by tests/tools/preview.cmake.
#include "picture.h"

#include <stdexcept>

#define STB_IMAGE_WRITE_IMPLEMENTATION
#define STB_IMAGE_WRITE_STATIC
#define STBI_WRITE_NO_STDIO
#include <stb_image_write.h>

namespace obj_adapter::tool {

namespace {

constexpr int CHANNELS = 4;

void append(void* context, void* data, int size) {
    static_cast<std::string*>(context)->append(static_cast<const char*>(data),
                                               static_cast<std::size_t>(size));
}

}  // namespace

std::string encodePng(const Picture& picture) {
    std::string file;
    if (stbi_write_png_to_func(append, &file, picture.width, picture.height, CHANNELS,
                               picture.bytes.data(), picture.width * CHANNELS) == 0)
        throw std::runtime_error("cannot encode the picture");
    return file;
}

}  // namespace obj_adapter::tool
