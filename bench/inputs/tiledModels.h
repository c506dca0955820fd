// Real OBJ files, strung together to a size.
#pragma once

#include <cstdint>
#include <string>

namespace obj_adapter::bench {

// Writes one OBJ file that repeats all .obj files below the folder, one after the
// other, until it has so many bytes. Every repetition has its own vertices,
// texture points and normals: indices are moved on, and x coordinates too, so
// that compaction finds in each what it finds in the original.
//
// The libraries are copied beside the output, named after it, and each is loaded
// once. Bytes that are no v or f statement stay as they are.
void writeTiledModels(const std::string& folder, const std::string& outputFile, std::int64_t bytes);

}  // namespace obj_adapter::bench
