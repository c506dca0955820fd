// Rounds of subdivision one by one; the floor of writing their tables.
#include "stages/subdivisionStage.h"

#include "measuring/answers.h"
#include "meshes/benchMeshes.h"
#include "model/objModel.h"
#include "processing/subdivisionRound.h"

#include <algorithm>
#include <new>
#include <stdexcept>

#include <sys/mman.h>

namespace obj_adapter::bench {

namespace {

// A texture point for every vertex, and every corner with that of its vertex.
void addTextures(ObjModel& model) {
    for (const Vertex& vertex : model.vertices) {
        TexturePoint point;
        point.u = vertex.x;
        point.v = vertex.y;
        model.addTexturePoint(point);
    }
    for (Face& face : model.faces) {
        for (FaceElement& corner : face.elements)
            corner.textureIndex = corner.vertexIndex;
    }
}

void describe(ObjModel& model, Measured& measured) {
    double sum = 0;
    for (const Vertex& vertex : model.vertices)
        sum += weighPosition(vertex.x, vertex.y, vertex.z);
    measured.setCount("sum", sum);
    measured.setCount("faces", model.getNumberOfFaces());
    measured.setCount("vertices", model.getNumberOfVertices());
    measured.setCount("texture points", model.getNumberOfTexturePoints());
    const test::ModelView view = test::viewOfModel(model);
    measured.setCount("table bytes", static_cast<double>(tableBytes(view)));
    measured.setAnswer(hashGeometry(view));
}

// A table on pages of its own, which nothing has touched.
template <typename Record>
Record* mapTable(std::size_t count, bool hasHugePages) {
    constexpr std::size_t HUGE_PAGE = std::size_t{2} << 20U;
    const std::size_t bytes = count * sizeof(Record) + 2 * HUGE_PAGE;
    void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                        MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        throw std::bad_alloc();
    madvise(memory, bytes, hasHugePages ? MADV_HUGEPAGE : MADV_NOHUGEPAGE);
    const auto address = reinterpret_cast<std::uintptr_t>(memory);
    return reinterpret_cast<Record*>((address + HUGE_PAGE - 1) / HUGE_PAGE * HUGE_PAGE);
}

// Places records one behind the other; make(i) gives the i-th.
template <typename Record, typename Make>
void fillTable(std::size_t count, bool hasHugePages, Make make) {
    Record* table = mapTable<Record>(count, hasHugePages);
    for (std::size_t place = 0; place < count; ++place)
        new (table + place) Record(make(static_cast<std::int32_t>(place)));
    // The compiler may not leave the table out.
    asm volatile("" : : "r"(table) : "memory");
}

}  // namespace

void subdivideMesh(const Arguments& arguments, Measured& measured) {
    ObjModel model;
    test::fillModel(makeBenchMesh(arguments.at(0), std::stoi(arguments.at(1))), model);
    const int rounds = std::stoi(arguments.at(2));
    if (arguments.size() > 3)
        addTextures(model);
    // As compaction leaves them; the vertices stay where the other libraries have
    // them.
    std::sort(model.faces.begin(), model.faces.end());
    ParentEdges parents;
    for (int round = 1; round <= rounds; ++round)
        measured.time("round " + std::to_string(round), [&] { subdivideOnce(model, parents); });
    describe(model, measured);
}

void writeTables(const Arguments& arguments, Measured& measured) {
    const std::size_t faces = std::stoul(arguments.at(0));
    const std::size_t vertices = std::stoul(arguments.at(1));
    const std::size_t texturePoints = std::stoul(arguments.at(2));
    const bool hasHugePages = arguments.at(3) == "huge";
    measured.time("write", [&] {
        fillTable<Face>(faces, hasHugePages, [](std::int32_t place) {
            Face face;
            for (FaceElement& corner : face.elements)
                corner.vertexIndex = place;
            return face;
        });
        fillTable<Vertex>(vertices, hasHugePages, [](std::int32_t place) {
            Vertex vertex(place, 0, 0);
            vertex.index = place;
            return vertex;
        });
        fillTable<TexturePoint>(texturePoints, hasHugePages, [](std::int32_t place) {
            TexturePoint point;
            point.u = place;
            point.v = 0;
            point.index = place;
            return point;
        });
        fillTable<int>(faces, hasHugePages, [](std::int32_t place) { return place; });
    });
}

}  // namespace obj_adapter::bench
