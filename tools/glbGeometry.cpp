// Vertex and index data of GLB files. Covered by tests/tools/glbWriterTest.cpp.
#include "glbGeometry.h"

#include "littleEndian.h"
#include "singlePrecision.h"

#include <algorithm>
#include <unordered_map>

namespace obj_adapter::tool {

namespace {

// Numbers of the format.
constexpr int COMPONENT_UNSIGNED_INT = 5125;
constexpr int COMPONENT_FLOAT = 5126;
constexpr int TARGET_VERTICES = 34962;
constexpr int TARGET_INDICES = 34963;
constexpr int MODE_TRIANGLES = 4;

constexpr std::size_t BYTES_OF_A_FLOAT = 4;

// The range of one component, after rounding, as readers compare it exactly.
class Range {
public:
    void include(float value) {
        low = std::min(low, value);
        high = std::max(high, value);
    }
    double getLow() const { return static_cast<double>(low); }
    double getHigh() const { return static_cast<double>(high); }

private:
    float low = std::numeric_limits<float>::infinity();
    float high = -std::numeric_limits<float>::infinity();
};

Json makeAccessor(int view, std::size_t offset, int componentType, std::size_t count,
                  const char* type) {
    Json accessor;
    accessor["bufferView"] = view;
    accessor["byteOffset"] = offset;
    accessor["componentType"] = componentType;
    accessor["count"] = count;
    accessor["type"] = type;
    return accessor;
}

// What does not fit is 0: texture coordinates may be missing or wrong where
// positions are not.
float floatOrZero(double value) {
    return fitsSinglePrecision({value, 0.0, 0.0}) ? static_cast<float>(value) : 0.0F;
}

}  // namespace

GlbGeometry::GlbGeometry(const ModelAccess& importedModel, const CornerNormals& cornerNormals,
                         bool fileNormalsOnly, const Vector3& originOfPositions)
    : model(importedModel),
      normals(cornerNormals),
      onlyNormalsOfFile(fileNormalsOnly),
      origin(originOfPositions) {}

bool GlbGeometry::isWritable(const Face& face) const {
    if (!model.isDrawable(face))
        return false;
    return std::all_of(
        std::begin(face.elements), std::end(face.elements), [this](const FaceElement& corner) {
            return fitsSinglePrecision(model.getPosition(corner.vertexIndex) - origin);
        });
}

Json GlbGeometry::addPrimitive(const std::vector<int>& faces) {
    const bool withNormals =
        !onlyNormalsOfFile || std::any_of(faces.begin(), faces.end(),
                                          [this](int face) { return normals.isFromFile(face); });
    std::vector<Corner> corners;
    std::vector<std::uint32_t> primitiveIndices;
    std::unordered_map<Corner, std::uint32_t, CornerHash> known;
    bool withTexturePoints = false;
    for (const int face : faces) {
        for (int place = 0; place < CORNERS_PER_FACE; ++place) {
            const Corner corner = cornerOf(face, place, withNormals);
            const auto [entry, isNew] =
                known.try_emplace(corner, static_cast<std::uint32_t>(corners.size()));
            if (isNew)
                corners.push_back(corner);
            primitiveIndices.push_back(entry->second);
            withTexturePoints = withTexturePoints || corner.texturePoint != NO_INDEX;
        }
    }
    Json primitive;
    primitive["attributes"]["POSITION"] = addPositions(corners);
    if (withNormals)
        primitive["attributes"]["NORMAL"] = addNormals(corners);
    if (withTexturePoints)
        primitive["attributes"]["TEXCOORD_0"] = addTexturePoints(corners);
    primitive["indices"] = addIndices(primitiveIndices);
    primitive["mode"] = MODE_TRIANGLES;
    return primitive;
}

Json GlbGeometry::takeBufferViews(std::string& bytes) {
    constexpr std::size_t STRIDES[VIEW_COUNT] = {3 * BYTES_OF_A_FLOAT, 3 * BYTES_OF_A_FLOAT,
                                                 2 * BYTES_OF_A_FLOAT, 0};
    Json list = Json::array();
    std::array<int, VIEW_COUNT> places{};
    for (std::size_t view = 0; view < VIEW_COUNT; ++view) {
        places[view] = static_cast<int>(list.size());
        if (views[view].empty())
            continue;
        Json entry;
        entry["buffer"] = 0;
        entry["byteOffset"] = bytes.size();
        entry["byteLength"] = views[view].size();
        if (STRIDES[view] != 0)
            entry["byteStride"] = STRIDES[view];
        entry["target"] = view == INDICES ? TARGET_INDICES : TARGET_VERTICES;
        list.push_back(std::move(entry));
        bytes += views[view];
        std::string().swap(views[view]);
    }
    // Views without bytes are left out, which moves those behind them.
    for (Json& accessor : accessors) {
        const auto view = accessor["bufferView"].get<std::size_t>();
        accessor["bufferView"] = places[view];
    }
    return list;
}

std::size_t GlbGeometry::CornerHash::operator()(const Corner& corner) const {
    // Odd numbers, so that no bit of an index is lost.
    constexpr std::size_t VERTEX_FACTOR = 73856093;
    constexpr std::size_t TEXTURE_FACTOR = 19349663;
    constexpr std::size_t NORMAL_FACTOR = 83492791;
    return static_cast<std::size_t>(corner.vertex) * VERTEX_FACTOR ^
           static_cast<std::size_t>(corner.texturePoint + 1) * TEXTURE_FACTOR ^
           static_cast<std::size_t>(corner.normal + 1) * NORMAL_FACTOR;
}

GlbGeometry::Corner GlbGeometry::cornerOf(int face, int corner, bool withNormals) const {
    const FaceElement& element = model.getFace(face).elements[corner];
    return {element.vertexIndex, model.texturePointOf(element),
            withNormals ? normals.indexOf(face, corner) : NO_INDEX};
}

int GlbGeometry::addAccessor(Json accessor) {
    accessors.push_back(std::move(accessor));
    return static_cast<int>(accessors.size()) - 1;
}

int GlbGeometry::addPositions(const std::vector<Corner>& corners) {
    std::string& bytes = views[POSITIONS];
    Json accessor = makeAccessor(POSITIONS, bytes.size(), COMPONENT_FLOAT, corners.size(), "VEC3");
    Range ranges[3];
    for (const Corner& corner : corners) {
        const Vector3 position = model.getPosition(corner.vertex) - origin;
        const double coordinates[3] = {position.x, position.y, position.z};
        for (int axis = 0; axis < 3; ++axis) {
            // No negative zero, which readers' comparisons treat differently.
            const float value = static_cast<float>(coordinates[axis]) + 0.0F;
            ranges[axis].include(value);
            appendFloat(bytes, value);
        }
    }
    accessor["min"] = {ranges[0].getLow(), ranges[1].getLow(), ranges[2].getLow()};
    accessor["max"] = {ranges[0].getHigh(), ranges[1].getHigh(), ranges[2].getHigh()};
    return addAccessor(std::move(accessor));
}

int GlbGeometry::addNormals(const std::vector<Corner>& corners) {
    std::string& bytes = views[NORMALS];
    Json accessor = makeAccessor(NORMALS, bytes.size(), COMPONENT_FLOAT, corners.size(), "VEC3");
    for (const Corner& corner : corners) {
        const Vector3& normal = normals.getNormal(corner.normal);
        appendFloat(bytes, static_cast<float>(normal.x));
        appendFloat(bytes, static_cast<float>(normal.y));
        appendFloat(bytes, static_cast<float>(normal.z));
    }
    return addAccessor(std::move(accessor));
}

// OBJ counts v from the bottom of the image, GLB from its top.
int GlbGeometry::addTexturePoints(const std::vector<Corner>& corners) {
    std::string& bytes = views[TEXTURE_POINTS];
    Json accessor =
        makeAccessor(TEXTURE_POINTS, bytes.size(), COMPONENT_FLOAT, corners.size(), "VEC2");
    for (const Corner& corner : corners) {
        if (corner.texturePoint == NO_INDEX) {
            appendFloat(bytes, 0.0F);
            appendFloat(bytes, 0.0F);
            continue;
        }
        const TexturePoint& point = model.getTexturePoint(corner.texturePoint);
        appendFloat(bytes, floatOrZero(point.u));
        appendFloat(bytes, floatOrZero(1.0 - point.v));
    }
    return addAccessor(std::move(accessor));
}

int GlbGeometry::addIndices(const std::vector<std::uint32_t>& primitiveIndices) {
    std::string& bytes = views[INDICES];
    Json accessor = makeAccessor(INDICES, bytes.size(), COMPONENT_UNSIGNED_INT,
                                 primitiveIndices.size(), "SCALAR");
    for (const std::uint32_t index : primitiveIndices)
        appendUnsigned(bytes, index);
    return addAccessor(std::move(accessor));
}

}  // namespace obj_adapter::tool
