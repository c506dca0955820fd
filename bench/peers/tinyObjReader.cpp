// tinyobjloader reads.
#include "peers/readers.h"

#define TINYOBJLOADER_USE_DOUBLE
#define TINYOBJLOADER_IMPLEMENTATION
#include <tiny_obj_loader.h>

#include <filesystem>
#include <stdexcept>

namespace obj_adapter::bench {

void readWithTinyObjLoader(const Arguments& arguments, Measured& measured) {
    const std::string& file = arguments.at(0);
    const std::string folder = std::filesystem::path(file).parent_path().string() + "/";
    tinyobj::attrib_t attributes;
    std::vector<tinyobj::shape_t> shapes;
    std::vector<tinyobj::material_t> materials;
    std::string warning;
    std::string error;
    bool isRead = false;
    measured.time("import", [&] {
        // The last argument: no vertex colours where the file has none.
        isRead = tinyobj::LoadObj(&attributes, &shapes, &materials, &warning, &error, file.c_str(),
                                  folder.c_str(), true, false);
    });
    if (!isRead)
        throw std::runtime_error("tinyobjloader: " + error);
    std::size_t faces = 0;
    for (const tinyobj::shape_t& shape : shapes)
        faces += shape.mesh.num_face_vertices.size();
    measured.setCount("faces", static_cast<double>(faces));
    measured.setCount("vertices", static_cast<double>(attributes.vertices.size() / 3));
    measured.setCount("materials", static_cast<double>(materials.size()));
}

}  // namespace obj_adapter::bench
