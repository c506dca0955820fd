// The generated inputs as files, made on demand.
#pragma once

#include <cstdint>
#include <string>

namespace obj_adapter::bench {

// The name of the shape that tiles real files.
inline const char MODELS_SHAPE[] = "models";

struct InputFolder {
    std::string path;
    std::string modelFolder;  // where real files are; empty if there are none
    std::uint64_t seed = 1;

    // The path of the OBJ file of that shape and size, which is written if it is
    // not there. Throws std::runtime_error if there is no such shape.
    std::string provide(const std::string& shape, double megabytes) const;
};

}  // namespace obj_adapter::bench
