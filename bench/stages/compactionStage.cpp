// Compaction of tables alone, and std::sort beside it.
#include "stages/compactionStage.h"

#include "measuring/answers.h"
#include "meshes/benchPoints.h"
#include "model/objModel.h"
#include "processing/bucketSort.h"
#include "processing/compaction.h"
#include "processing/faceOrder.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>

namespace obj_adapter::bench {

namespace {

constexpr char PART[] = "sort";

void fillVertices(const Arguments& arguments, VertexTable& vertices) {
    const std::int64_t count = std::stoll(arguments.at(1));
    const BenchPoints points(arguments.at(0), count);
    vertices.reserve(static_cast<std::size_t>(count));
    for (std::int64_t number = 0; number < count; ++number) {
        const BenchPoint point = points.at(number);
        vertices.emplace_back(point.x, point.y, point.z).index = static_cast<std::int32_t>(number);
    }
}

// The triangles of a square grid: 0 and 1 of the first cell, 2 and 3 of the next.
class GridFaces {
public:
    explicit GridFaces(std::int64_t faceCount)
        : side(static_cast<std::int64_t>(std::sqrt(static_cast<double>(faceCount) / 2)) + 1) {}

    // turn: which corner comes first.
    Face at(std::int64_t number, int turn) const {
        const std::int64_t cell = number / 2;
        const std::int64_t a = cell / side * (side + 1) + cell % side;
        const std::int64_t c = a + side + 1;
        const std::int64_t first[CORNERS_PER_FACE] = {a, a + 1, c};
        const std::int64_t second[CORNERS_PER_FACE] = {a + 1, c + 1, c};
        Face face;
        for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
            const int from = (corner + turn) % CORNERS_PER_FACE;
            face.elements[corner].vertexIndex =
                static_cast<std::int32_t>(number % 2 == 0 ? first[from] : second[from]);
        }
        face.groupIndex = 0;
        return face;
    }

    // In ascending order, so that compaction leaves them.
    void fillVertices(VertexTable& vertices) const {
        vertices.reserve(static_cast<std::size_t>((side + 1) * (side + 1)));
        for (std::int64_t row = 0; row <= side; ++row) {
            for (std::int64_t column = 0; column <= side; ++column)
                vertices.emplace_back(static_cast<double>(row), static_cast<double>(column), 0.0);
        }
    }

private:
    std::int64_t side;
};

// file      cell by cell
// shuffled  the same in any order
// sixfold   a sixth of them, each six times, at places far apart, turned
void fillFaces(const Arguments& arguments, ObjModel& model) {
    constexpr std::uint64_t COPIES = 6;
    const std::string& input = arguments.at(0);
    const std::int64_t count = std::stoll(arguments.at(1));
    const GridFaces grid(count);
    grid.fillVertices(model.vertices);
    model.groups.emplace_back().name = "grid";
    model.faces.reserve(static_cast<std::size_t>(count));
    for (std::int64_t number = 0; number < count; ++number) {
        const std::uint64_t any = mixed(static_cast<std::uint64_t>(number));
        if (input == "sixfold")
            model.faces.push_back(grid.at(
                static_cast<std::int64_t>(any % (static_cast<std::uint64_t>(count) / COPIES)),
                static_cast<int>(any >> 40U) % CORNERS_PER_FACE));
        else
            model.faces.push_back(grid.at(number, 0));
    }
    if (input == "shuffled") {
        for (std::uint64_t last = static_cast<std::uint64_t>(count) - 1; last > 0; --last)
            std::swap(model.faces[last], model.faces[mixed(last) % (last + 1)]);
    } else if (input != "file" && input != "sixfold") {
        throw std::runtime_error("no such faces: " + input);
    }
}

void describe(ObjModel& model, Measured& measured) {
    measured.setCount("vertices", model.getNumberOfVertices());
    measured.setCount("faces", model.getNumberOfFaces());
    measured.setAnswer(hashGeometry(test::viewOfModel(model)));
}

template <typename Table>
void requireSorted(const Table& table) {
    if (!std::is_sorted(table.begin(), table.end()))
        throw std::runtime_error("not sorted");
}

// As many as compaction leaves.
void countDifferentFaces(const ObjModel& model, Measured& measured) {
    std::size_t different = 1;
    for (std::size_t place = 1; place < model.faces.size(); ++place)
        different += model.faces[place - 1] < model.faces[place] ? 1 : 0;
    measured.setCount("faces", static_cast<double>(different));
}

}  // namespace

void compactVertices(const Arguments& arguments, Measured& measured) {
    ObjModel model;
    fillVertices(arguments, model.vertices);
    measured.time(PART, [&] { compactData(model); });
    requireSorted(model.vertices);
    describe(model, measured);
}

void sortVerticesPlainly(const Arguments& arguments, Measured& measured) {
    ObjModel model;
    fillVertices(arguments, model.vertices);
    measured.time(PART, [&] { std::sort(model.vertices.begin(), model.vertices.end()); });
    // As many as compaction leaves.
    std::size_t different = 1;
    for (std::size_t place = 1; place < model.vertices.size(); ++place)
        different += model.vertices[place] == model.vertices[place - 1] ? 0 : 1;
    measured.setCount("vertices", static_cast<double>(different));
}

void compactFaces(const Arguments& arguments, Measured& measured) {
    ObjModel model;
    fillFaces(arguments, model);
    measured.time(PART, [&] { compactData(model); });
    requireSorted(model.faces);
    describe(model, measured);
}

// The sort that compaction does, and nothing else of it.
void sortFacesAlone(const Arguments& arguments, Measured& measured) {
    ObjModel model;
    fillFaces(arguments, model);
    measured.time(PART, [&] {
        const FaceOrder order(model.vertices.size());
        const auto sorter = std::make_unique<BucketSorter<Face, FaceOrder>>(model.faces.size());
        sorter->beginCounting(model.faces.size(), order);
        std::int32_t position = 0;
        for (Face& face : model.faces) {
            FaceOrder::mark(face, position++);
            sorter->count(face);
        }
        Face* place = model.faces.data();
        sorter->visitInOrder(model.faces.data(), model.faces.size(), order,
                             [&](const Face& marked) {
                                 Face face = marked;
                                 FaceOrder::unmark(face);
                                 *place++ = face;
                             });
    });
    requireSorted(model.faces);
    countDifferentFaces(model, measured);
}

void sortFacesPlainly(const Arguments& arguments, Measured& measured) {
    ObjModel model;
    fillFaces(arguments, model);
    measured.time(PART, [&] { std::sort(model.faces.begin(), model.faces.end()); });
    countDifferentFaces(model, measured);
}

}  // namespace obj_adapter::bench
