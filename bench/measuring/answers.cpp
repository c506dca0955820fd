// Hashes of models. Used wherever something is timed.
#include "measuring/answers.h"

#include "support/printedModel.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string_view>

namespace obj_adapter::bench {

namespace {

using test::ModelView;

// Fowler, Noll and Vo, 64 bits, by bytes.
class TextHash {
public:
    void add(std::string_view text) {
        for (const char character : text)
            state = (state ^ static_cast<unsigned char>(character)) * 0x100000001b3U;
    }
    std::uint64_t get() const { return state; }

private:
    std::uint64_t state = 0xcbf29ce484222325U;
};

// Words of 64 bits, each multiplied in.
class WordHash {
public:
    void add(std::uint64_t word) {
        state = (state ^ word) * 0x9e3779b97f4a7c15U;
        state ^= state >> 29U;
    }
    void add(double value) {
        add(std::bit_cast<std::uint64_t>(
            std::isnan(value) ? std::numeric_limits<double>::quiet_NaN() : value));
    }
    void add(std::int32_t value) { add(static_cast<std::uint64_t>(value)); }
    std::uint64_t get() const { return state; }

private:
    std::uint64_t state = 0x243f6a8885a308d3U;
};

// Prints a table in pieces; make gives a view that has one piece alone.
template <typename Record, typename MakeView>
void addPrinted(std::span<Record> records, MakeView makeView, TextHash& hash) {
    constexpr std::size_t RECORDS_AT_A_TIME = 1000;
    for (std::size_t begin = 0; begin < records.size(); begin += RECORDS_AT_A_TIME) {
        const std::size_t count = std::min(RECORDS_AT_A_TIME, records.size() - begin);
        ModelView view;
        makeView(view) = records.subspan(begin, count);
        hash.add(test::printModel(view));
    }
}

}  // namespace

std::uint64_t hashPrintedModel(const ModelView& model) {
    TextHash hash;
    const auto vertices = [](ModelView & view) -> auto& {
        return view.vertices;
    };
    addPrinted(model.vertices, vertices, hash);
    const auto texturePoints = [](ModelView & view) -> auto& {
        return view.texturePoints;
    };
    addPrinted(model.texturePoints, texturePoints, hash);
    const auto normals = [](ModelView & view) -> auto& {
        return view.normalPoints;
    };
    addPrinted(model.normalPoints, normals, hash);
    const auto faces = [](ModelView & view) -> auto& {
        return view.faces;
    };
    addPrinted(model.faces, faces, hash);
    const auto groups = [](ModelView & view) -> auto& {
        return view.groups;
    };
    addPrinted(model.groups, groups, hash);
    const auto materials = [](ModelView & view) -> auto& {
        return view.materials;
    };
    addPrinted(model.materials, materials, hash);
    return hash.get();
}

std::uint64_t hashGeometry(const ModelView& model) {
    WordHash hash;
    for (const Vertex& vertex : model.vertices) {
        for (const double coordinate : {vertex.x, vertex.y, vertex.z, vertex.w})
            hash.add(coordinate);
    }
    for (const TexturePoint& point : model.texturePoints) {
        for (const double coordinate : {point.u, point.v, point.w})
            hash.add(coordinate);
    }
    for (const NormalPoint& normal : model.normalPoints) {
        for (const double component : {normal.x, normal.y, normal.z})
            hash.add(component);
    }
    for (const Face& face : model.faces) {
        for (const FaceElement& corner : face.elements) {
            for (const std::int32_t index :
                 {corner.vertexIndex, corner.textureIndex, corner.normalIndex})
                hash.add(index);
        }
    }
    return hash.get();
}

std::uint64_t tableBytes(const ModelView& model) {
    std::size_t bytes = model.vertices.size_bytes() + model.texturePoints.size_bytes() +
                        model.normalPoints.size_bytes() + model.faces.size_bytes() +
                        model.groups.size_bytes() + model.materials.size_bytes();
    for (const Group& group : model.groups) {
        bytes += group.name.size() + group.faceIndices.size() * sizeof(int);
        for (const std::string& name : group.names)
            bytes += sizeof name + name.size();
    }
    return bytes;
}

}  // namespace obj_adapter::bench
