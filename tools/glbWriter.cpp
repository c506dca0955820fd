// Writes GLB. Covered by tests/tools/glbWriterTest.cpp; others' tools read what it
// writes in tests/tools/convertedFilesTest.cpp and glbValidator.cmake.
#include "glbWriter.h"

#include "boundingBox.h"
#include "cornerNormals.h"
#include "glbGeometry.h"
#include "glbMaterials.h"
#include "groupTree.h"
#include "jsonOutput.h"
#include "littleEndian.h"
#include "programVersion.h"
#include "singlePrecision.h"

#include <cstdint>
#include <limits>
#include <map>
#include <stdexcept>

namespace obj_adapter::tool {

namespace {

// Numbers of the container.
constexpr std::uint32_t MAGIC = 0x46546C67;
constexpr std::uint32_t CONTAINER_VERSION = 2;
constexpr std::uint32_t CHUNK_JSON = 0x4E4F534A;
constexpr std::uint32_t CHUNK_BINARY = 0x004E4942;
constexpr std::size_t HEADER_BYTES = 12;
constexpr std::size_t CHUNK_HEADER_BYTES = 8;
constexpr std::size_t WORD_BYTES = 4;

void padToWords(std::string& bytes, char filler) {
    bytes.append((WORD_BYTES - bytes.size() % WORD_BYTES) % WORD_BYTES, filler);
}

std::string chunkHeader(std::size_t length, std::uint32_t type) {
    std::string header;
    appendUnsigned(header, static_cast<std::uint32_t>(length));
    appendUnsigned(header, type);
    return header;
}

void writeContainer(OutputFile& file, std::string json, std::string binary) {
    padToWords(json, ' ');
    padToWords(binary, '\0');
    std::size_t total = HEADER_BYTES + CHUNK_HEADER_BYTES + json.size();
    if (!binary.empty())
        total += CHUNK_HEADER_BYTES + binary.size();
    if (total > std::numeric_limits<std::uint32_t>::max())
        throw std::length_error("the model is too large for a GLB file");
    std::string header;
    appendUnsigned(header, MAGIC);
    appendUnsigned(header, CONTAINER_VERSION);
    appendUnsigned(header, static_cast<std::uint32_t>(total));
    file.write(header);
    file.write(chunkHeader(json.size(), CHUNK_JSON));
    file.write(json);
    if (!binary.empty()) {
        file.write(chunkHeader(binary.size(), CHUNK_BINARY));
        file.write(binary);
    }
}

// Where single precision is finer than a 4096th of the model's size, positions are
// written as they are. A model far from the origin, say in the coordinates of a
// map, is moved there, and its root node moves it back.
Vector3 originOf(const ModelAccess& model) {
    constexpr double FAR_AWAY = 4096.0;
    Extent extents[AXIS_COUNT];
    for (int index = 0; index < model.getNumberOfFaces(); ++index) {
        const Face& face = model.getFace(index);
        if (!model.isDrawable(face))
            continue;
        for (const FaceElement& corner : face.elements) {
            const Vector3 position = model.getPosition(corner.vertexIndex);
            extents[0].include(position.x);
            extents[1].include(position.y);
            extents[2].include(position.z);
        }
    }
    if (extents[0].isEmpty())
        return {};
    const Vector3 low{extents[0].low, extents[1].low, extents[2].low};
    const Vector3 high{extents[0].high, extents[1].high, extents[2].high};
    const Vector3 center = low * 0.5 + high * 0.5;
    const double size = largestCoordinate(high * 0.5 - low * 0.5);
    if (!(largestCoordinate(center) > FAR_AWAY * size) || !fitsSinglePrecision(center))
        return {};
    return center;
}

class GlbBuilder {
public:
    GlbBuilder(const ModelAccess& importedModel, const TextureFiles& textures,
               const GlbOptions& options)
        : model(importedModel),
          normals(model, options.smallestCosine),
          origin(originOf(model)),
          geometry(model, normals, !options.smallestCosine, origin),
          materials(model, textures, options.folder, options.bumpIsNormal) {}

    GlbResult build(OutputFile& file) {
        Json document;
        document["asset"] = {{"version", "2.0"}, {"generator", getProgramVersion()}};
        addNodes(document);
        materials.moveInto(document);
        std::string binary;
        if (!geometry.isEmpty()) {
            Json views = geometry.takeBufferViews(binary);
            document["accessors"] = geometry.takeAccessors();
            document["bufferViews"] = std::move(views);
            document["buffers"] = Json::array({{{"byteLength", binary.size()}}});
        }
        writeContainer(file, document.dump(-1, ' ', false, Json::error_handler_t::replace),
                       std::move(binary));
        result.losses = materials.getLosses();
        return std::move(result);
    }

private:
    void addNodes(Json& document) {
        const std::vector<TreeNode> tree = listGroupTree(model.getConverter());
        Json nodes = Json::array();
        Json meshes = Json::array();
        for (const TreeNode& treeNode : tree) {
            Json node;
            node["name"] = treeNode.name;
            if (Json mesh = makeMesh(treeNode); !mesh.empty()) {
                node["mesh"] = meshes.size();
                meshes.push_back(std::move(mesh));
            }
            if (treeNode.parent != NO_PARENT)
                nodes[treeNode.parent]["children"].push_back(nodes.size());
            nodes.push_back(std::move(node));
        }
        if (!(origin == Vector3()))
            nodes[0]["translation"] = {origin.x, origin.y, origin.z};
        document["scene"] = 0;
        document["scenes"] = Json::array({{{"nodes", {0}}}});
        document["nodes"] = std::move(nodes);
        if (!meshes.empty())
            document["meshes"] = std::move(meshes);
    }

    // Empty for a node without faces that can be written. Materials come in the
    // order of their first faces.
    Json makeMesh(const TreeNode& node) {
        std::vector<std::vector<int>> parts;
        std::map<int, std::size_t> partOfMaterial;
        for (const int index : node.faces) {
            const Face& face = model.getFace(index);
            if (!geometry.isWritable(face))
                continue;
            const auto [part, isNew] =
                partOfMaterial.try_emplace(model.materialOf(face), parts.size());
            if (isNew)
                parts.emplace_back();
            parts[part->second].push_back(index);
            ++result.faces;
        }
        if (parts.empty())
            return {};
        Json mesh;
        mesh["name"] = *node.fullName;
        for (const std::vector<int>& faces : parts) {
            Json primitive = geometry.addPrimitive(faces);
            primitive["material"] = materials.add(model.materialOf(model.getFace(faces.front())));
            mesh["primitives"].push_back(std::move(primitive));
        }
        return mesh;
    }

    const ModelAccess& model;
    CornerNormals normals;
    Vector3 origin;
    GlbGeometry geometry;
    GlbMaterials materials;
    GlbResult result;
};

}  // namespace

GlbResult writeGlb(OutputFile& file, const ModelAccess& model, const TextureFiles& textures,
                   const GlbOptions& options) {
    return GlbBuilder(model, textures, options).build(file);
}

}  // namespace obj_adapter::tool
