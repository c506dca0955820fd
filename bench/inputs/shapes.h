// The kinds of generated OBJ files.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace obj_adapter::bench {

class TextSink;

// What a generator is told. The same request gives the same bytes everywhere.
struct InputRequest {
    std::int64_t bytes = 0;  // of the OBJ file and its library; met within a few per cent
    std::uint64_t seed = 1;
    std::string libraryName;  // as mtllib statements name it
};

struct Shape {
    const char* name;
    const char* description;
    bool hasQuads;
    bool hasPolygons;  // of more than four corners
    bool hasLibrary;

    // Writes the OBJ text, and the MTL text if there is a library (null else).
    void (*write)(const InputRequest& request, TextSink& obj, TextSink* mtl);
};

// In the order in which tables list them.
std::span<const Shape> getShapes();

// Files for the cost of materials, groups and material switches, and the plain
// one beside them.
std::span<const Shape> getCostShapes();

// Of either kind, or "pentagons", quads and pentagons by turns; null if there is
// none of that name.
const Shape* findShape(const std::string& name);

}  // namespace obj_adapter::bench
