// The floors of reading: what is left when less and less of the work is done.
#include "stages/readingFloors.h"

#include "measuring/answers.h"
#include "model/objModel.h"
#include "stages/numberFloor.h"

#include <cstring>

namespace obj_adapter::bench {

namespace {

// Adds up all numbers, so that none of them can be left out.
class SumSink {
public:
    void addVertex(double x, double y, double z, double w) { real += x + y + z + w; }
    void addTexturePoint(double u, double v, double w) { real += u + v + w; }
    void addNormal(double x, double y, double z) { real += x + y + z; }
    void addCorner(const RawCorner& corner) {
        whole += corner.indices[0] + corner.indices[1] + corner.indices[2];
    }
    void endFace() { ++faces; }
    void changeGroup() {}
    void changeMaterial() {}

    double real = 0;
    std::int64_t whole = 0;
    std::int64_t faces = 0;
};

// Writes records into tables of the library's own kind, which grow as its tables
// do. Polygons become fans; groups and materials are counted, no more.
class RecordSink {
public:
    RecordSink() { faceLists.emplace_back(); }

    void addVertex(double x, double y, double z, double w) {
        Vertex vertex(x, y, z);
        vertex.w = w;
        vertex.index = static_cast<std::int32_t>(model.vertices.size());
        model.vertices.push_back(vertex);
    }

    void addTexturePoint(double u, double v, double w) {
        TexturePoint point;
        point.u = u;
        point.v = v;
        point.w = w;
        point.index = static_cast<std::int32_t>(model.texturePoints.size());
        model.texturePoints.push_back(point);
    }

    void addNormal(double x, double y, double z) {
        NormalPoint normal;
        normal.x = x;
        normal.y = y;
        normal.z = z;
        normal.index = static_cast<std::int32_t>(model.normalPoints.size());
        model.normalPoints.push_back(normal);
    }

    void addCorner(const RawCorner& corner) {
        FaceElement element;
        element.vertexIndex = tableIndex(corner.indices[0], model.vertices.size());
        element.textureIndex = tableIndex(corner.indices[1], model.texturePoints.size());
        element.normalIndex = tableIndex(corner.indices[2], model.normalPoints.size());
        if (corners == 0)
            first = element;
        else if (corners > 1)
            addFace(first, previous, element);
        previous = element;
        ++corners;
    }

    void endFace() { corners = 0; }
    void changeGroup() { faceLists.emplace_back(); }
    void changeMaterial() { ++material; }

    ObjModel model;
    std::vector<std::vector<int>> faceLists;

private:
    static std::int32_t tableIndex(std::int32_t value, std::size_t count) {
        return value < 0 ? value + static_cast<std::int32_t>(count) : value - 1;
    }

    void addFace(const FaceElement& a, const FaceElement& b, const FaceElement& c) {
        Face face;
        face.elements[0] = a;
        face.elements[1] = b;
        face.elements[2] = c;
        face.materialIndex = material;
        face.groupIndex = static_cast<std::int32_t>(faceLists.size() - 1);
        faceLists.back().push_back(static_cast<int>(model.faces.size()));
        model.faces.push_back(face);
    }

    FaceElement first;
    FaceElement previous;
    std::int32_t material = NO_INDEX;
    int corners = 0;
};

}  // namespace

void readBytes(const Arguments& arguments, Measured& measured) {
    std::size_t bytes = 0;
    measured.time("import", [&] {
        BlockReader blocks(arguments.at(0));
        const char* begin = nullptr;
        const char* end = nullptr;
        while (blocks.nextBytes(begin, end))
            bytes += static_cast<std::size_t>(end - begin);
    });
    measured.setCount("bytes", static_cast<double>(bytes));
}

void findLines(const Arguments& arguments, Measured& measured) {
    std::size_t lines = 0;
    measured.time("import", [&] {
        BlockReader blocks(arguments.at(0));
        const char* begin = nullptr;
        const char* end = nullptr;
        while (blocks.next(begin, end)) {
            for (; begin < end; ++lines) {
                const void* lineFeed =
                    std::memchr(begin, '\n', static_cast<std::size_t>(end - begin));
                begin = lineFeed == nullptr ? end : static_cast<const char*>(lineFeed) + 1;
            }
        }
    });
    measured.setCount("lines", static_cast<double>(lines));
}

void convertNumbers(const Arguments& arguments, Measured& measured) {
    SumSink sink;
    measured.time("import", [&] { PlainReader<SumSink>(sink).read(arguments.at(0)); });
    measured.setCount("sum", sink.real);
    measured.setCount("index sum", static_cast<double>(sink.whole));
}

void writeRecords(const Arguments& arguments, Measured& measured) {
    RecordSink sink;
    measured.time("import", [&] { PlainReader<RecordSink>(sink).read(arguments.at(0)); });
    measured.setCount("faces", static_cast<double>(sink.model.faces.size()));
    measured.setCount("vertices", static_cast<double>(sink.model.vertices.size()));
    measured.setAnswer(hashGeometry(test::viewOfModel(sink.model)));
}

}  // namespace obj_adapter::bench
