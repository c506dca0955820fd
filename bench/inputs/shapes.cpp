// The generated shapes. Their models are checked against stored hashes before
// anything is timed (bench/expectedModels.txt).
#include "inputs/shapes.h"

#include "inputs/textSink.h"
#include "support/randomSource.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

namespace obj_adapter::bench {

namespace {

using test::RandomSource;

constexpr int DECIMALS = 6;
constexpr int TEXTURE_DECIMALS = 4;
constexpr int NORMAL_DECIMALS = 4;

// Points on a hilly, slightly uneven grid, as scans and terrains have them. A
// point's coordinates depend on its place alone, so it can be written twice.
class Terrain {
public:
    explicit Terrain(std::uint64_t ownSeed) : seed(ownSeed) {}

    void writePoint(TextSink& obj, std::int64_t column, std::int64_t row) const {
        const std::uint64_t place =
            static_cast<std::uint64_t>(column) << 32U ^ static_cast<std::uint64_t>(row);
        const double height = HILL_HEIGHT * hill(column) * hill(row);
        obj << "v";
        obj.writeFixed(SPACING * static_cast<double>(column) + jitter(3 * place), DECIMALS);
        obj.writeFixed(SPACING * static_cast<double>(row) + jitter(3 * place + 1), DECIMALS);
        obj.writeFixed(height + jitter(3 * place + 2), DECIMALS) << "\n";
    }

private:
    static constexpr double SPACING = 0.125;
    static constexpr double UNEVENNESS = 0.05;
    static constexpr double HILL_HEIGHT = 1.5;
    static constexpr double HILL_LENGTH = 40.0;

    // The mixing steps of SplitMix64 (Steele, Lea, Flood, 2014).
    double jitter(std::uint64_t number) const {
        std::uint64_t mixed = seed + 0x9e3779b97f4a7c15U * (number + 1);
        mixed = (mixed ^ mixed >> 30U) * 0xbf58476d1ce4e5b9U;
        mixed = (mixed ^ mixed >> 27U) * 0x94d049bb133111ebU;
        mixed ^= mixed >> 31U;
        return UNEVENNESS * (static_cast<double>(mixed >> 11U) * 0x1p-53 - 0.5);
    }

    // A parabola for a wave: sines may differ in the last bit between platforms.
    static double hill(std::int64_t place) {
        const double turn = static_cast<double>(place) / HILL_LENGTH;
        const double part = turn - std::floor(turn);
        return 4 * part * (1 - part);
    }

    std::uint64_t seed;
};

// The point of a unit circle at that part of a full turn, roughly: evenly enough
// for polygons, and without the sine.
void pointOnCircle(double turn, double& x, double& y) {
    const double quarters = 4 * turn;
    const int quarter = static_cast<int>(quarters);
    const double t = quarters - quarter;
    x = (1 - t * t) / (1 + t * t);
    y = 2 * t / (1 + t * t);
    for (int i = 0; i < quarter; ++i) {
        const double formerX = x;
        x = -y;
        y = formerX;
    }
}

// A grid of about so many cells, wider than high.
struct GridSize {
    explicit GridSize(double cells)
        : columns(std::max<std::int64_t>(2, static_cast<std::int64_t>(std::sqrt(1.5 * cells)))),
          rows(std::max<std::int64_t>(
              2, static_cast<std::int64_t>(cells / static_cast<double>(columns)))) {}

    std::int64_t vertexCount() const { return (columns + 1) * (rows + 1); }

    std::int64_t columns;
    std::int64_t rows;
};

// How many cells make a file of the size, where a cell's bytes grow with the
// number of digits in its indices.
double cellsForBytes(double bytes, double fixedBytesPerCell, double indicesPerCell) {
    double cells = bytes / (fixedBytesPerCell + 6 * indicesPerCell);
    for (int step = 0; step < 3; ++step) {
        const double digits = std::max(1.0, std::log10(std::max(cells, 10.0)) + 0.55);
        cells = bytes / (fixedBytesPerCell + digits * indicesPerCell);
    }
    return std::max(cells, 4.0);
}

void writeGridVertices(const GridSize& size, const Terrain& terrain, TextSink& obj) {
    for (std::int64_t row = 0; row <= size.rows; ++row) {
        for (std::int64_t column = 0; column <= size.columns; ++column)
            terrain.writePoint(obj, column, row);
    }
}

void writeTriangle(TextSink& obj, std::int64_t a, std::int64_t b, std::int64_t c) {
    obj << "f " << a << " " << b << " " << c << "\n";
}

void writeGridCell(TextSink& obj, const GridSize& size, std::int64_t column, std::int64_t row) {
    const std::int64_t a = row * (size.columns + 1) + column + 1;
    const std::int64_t c = a + size.columns + 1;
    writeTriangle(obj, a, a + 1, c);
    writeTriangle(obj, a + 1, c + 1, c);
}

GridSize triangleGridOf(double bytes) {
    constexpr double FIXED_BYTES_PER_CELL = 32.5 + 2 * 5;
    constexpr double INDICES_PER_CELL = 6;
    return GridSize(cellsForBytes(bytes, FIXED_BYTES_PER_CELL, INDICES_PER_CELL));
}

// All v, then all f.
void writeGrid(const InputRequest& request, TextSink& obj, TextSink* /*mtl*/) {
    const Terrain terrain(request.seed);
    const GridSize size = triangleGridOf(static_cast<double>(request.bytes));
    writeGridVertices(size, terrain, obj);
    for (std::int64_t row = 0; row < size.rows; ++row) {
        for (std::int64_t column = 0; column < size.columns; ++column)
            writeGridCell(obj, size, column, row);
    }
}

void writeCorner(TextSink& obj, std::int64_t vertex, std::int64_t texturePoint,
                 std::int64_t normal) {
    obj << " " << vertex << "/" << texturePoint << "/" << normal;
}

// v, vt and vn of a grid, then its cells as convex quads, in groups of some
// thousand, as modelling programs write them.
void writeQuads(const InputRequest& request, TextSink& obj, TextSink* /*mtl*/) {
    constexpr double FIXED_BYTES_PER_CELL = 32.5 + 17 + 26 + 14;
    constexpr double INDICES_PER_CELL = 12;
    constexpr int ROWS_PER_GROUP = 20;
    RandomSource random(request.seed);
    const Terrain terrain(request.seed);
    const GridSize size(
        cellsForBytes(static_cast<double>(request.bytes), FIXED_BYTES_PER_CELL, INDICES_PER_CELL));
    obj << "o terrain\n";
    writeGridVertices(size, terrain, obj);
    for (std::int64_t point = 0; point < size.vertexCount(); ++point) {
        obj << "vt";
        obj.writeFixed(random.fraction(), TEXTURE_DECIMALS);
        obj.writeFixed(random.fraction(), TEXTURE_DECIMALS) << "\n";
    }
    for (std::int64_t point = 0; point < size.vertexCount(); ++point) {
        obj << "vn";
        for (int axis = 0; axis < 3; ++axis)
            obj.writeFixed(2 * random.fraction() - 1, NORMAL_DECIMALS);
        obj << "\n";
    }
    for (std::int64_t row = 0; row < size.rows; ++row) {
        if (row % ROWS_PER_GROUP == 0)
            obj << "g strip_" << row / ROWS_PER_GROUP << "\n";
        for (std::int64_t column = 0; column < size.columns; ++column) {
            const std::int64_t a = row * (size.columns + 1) + column + 1;
            const std::int64_t d = a + size.columns + 1;
            obj << "f";
            for (const std::int64_t corner : {a, a + 1, d + 1, d})
                writeCorner(obj, corner, corner, size.vertexCount() + 1 - corner);
            obj << "\n";
        }
    }
}

void writeMaterial(TextSink& mtl, std::int64_t number, RandomSource& random) {
    mtl << "newmtl material_" << number << "\nKa 0.1 0.1 0.1\nKd";
    for (int channel = 0; channel < 3; ++channel)
        mtl.writeFixed(random.fraction(), TEXTURE_DECIMALS);
    mtl << "\nKs 0.5 0.5 0.5\nNs 32\nd 1\nillum 2\nmap_Kd textures/picture_" << number
        << ".png\n\n";
}

// A box somewhere, with eight v of its own and twelve f.
void writeBox(TextSink& obj, RandomSource& random, std::int64_t firstVertex) {
    constexpr int BOX_TRIANGLES[][3] = {{0, 2, 1}, {1, 2, 3}, {4, 5, 6}, {5, 7, 6},
                                        {0, 1, 4}, {1, 5, 4}, {2, 6, 3}, {3, 6, 7},
                                        {0, 4, 2}, {2, 4, 6}, {1, 3, 5}, {3, 7, 5}};
    constexpr int BOX_CORNERS = 8;
    double low[3];
    double high[3];
    for (int axis = 0; axis < 3; ++axis) {
        low[axis] = 1000 * random.fraction() - 500;
        high[axis] = low[axis] + random.fraction() + 0.25;
    }
    for (int corner = 0; corner < BOX_CORNERS; ++corner) {
        obj << "v";
        for (int axis = 0; axis < 3; ++axis)
            obj.writeFixed((corner >> axis) % 2 == 0 ? low[axis] : high[axis], DECIMALS);
        obj << "\n";
    }
    for (const auto& [a, b, c] : BOX_TRIANGLES)
        writeTriangle(obj, firstVertex + a, firstVertex + b, firstVertex + c);
}

// Boxes, each a group with a compound name and a material out of 200.
void writeGroups(const InputRequest& request, TextSink& obj, TextSink* mtl) {
    constexpr int MATERIALS = 200;
    constexpr int BOX_CORNERS = 8;
    RandomSource random(request.seed);
    for (int material = 0; material < MATERIALS; ++material)
        writeMaterial(*mtl, material, random);
    obj << "mtllib " << request.libraryName << "\n";
    std::int64_t part = 0;
    for (; obj.getByteCount() + mtl->getByteCount() < request.bytes; ++part) {
        obj << "g assembly_" << part / 50 << " part_" << part << "\nusemtl material_"
            << random.below(MATERIALS) << "\n";
        writeBox(obj, random, BOX_CORNERS * part + 1);
    }
}

// A grid whose numbers have sixteen or seventeen digits, half of them with an
// exponent.
void writeDecimals(const InputRequest& request, TextSink& obj, TextSink* /*mtl*/) {
    constexpr double FIXED_BYTES_PER_CELL = 65 + 2 * 5;
    constexpr double INDICES_PER_CELL = 6;
    constexpr int LONG_DECIMALS = 16;
    RandomSource random(request.seed);
    const GridSize size(
        cellsForBytes(static_cast<double>(request.bytes), FIXED_BYTES_PER_CELL, INDICES_PER_CELL));
    for (std::int64_t vertex = 0; vertex < size.vertexCount(); ++vertex) {
        obj << "v";
        for (int axis = 0; axis < 3; ++axis) {
            if (random.oneIn(2))
                obj.writeScientific((random.fraction() - 0.5) * 1e-3, LONG_DECIMALS);
            else
                obj.writeFixed(random.fraction() - 0.5, LONG_DECIMALS);
        }
        obj << "\n";
    }
    for (std::int64_t row = 0; row < size.rows; ++row) {
        for (std::int64_t column = 0; column < size.columns; ++column)
            writeGridCell(obj, size, column, row);
    }
}

// Flat polygons of 5 to 40 corners around a centre, every other one concave: its
// corners lie at random distances.
void writePolygons(const InputRequest& request, TextSink& obj, TextSink* /*mtl*/) {
    constexpr int LEAST_CORNERS = 5;
    constexpr int MOST_CORNERS = 40;
    RandomSource random(request.seed);
    std::int64_t firstVertex = 1;
    while (obj.getByteCount() < request.bytes) {
        const int corners = random.between(LEAST_CORNERS, MOST_CORNERS);
        const bool isConcave = random.oneIn(2);
        const double centreX = 1000 * random.fraction();
        const double centreY = 1000 * random.fraction();
        const double height = 100 * random.fraction();
        for (int corner = 0; corner < corners; ++corner) {
            double x = 0;
            double y = 0;
            pointOnCircle(static_cast<double>(corner) / corners, x, y);
            const double radius = isConcave ? 1 + 3 * random.fraction() : 4;
            obj << "v";
            obj.writeFixed(centreX + radius * x, DECIMALS);
            obj.writeFixed(centreY + radius * y, DECIMALS);
            obj.writeFixed(height, DECIMALS) << "\n";
        }
        obj << "f";
        for (int corner = 0; corner < corners; ++corner)
            obj << " " << firstVertex + corner;
        obj << "\n";
        firstVertex += corners;
    }
}

// Patches of a grid, each with its v, vt and vn and then its f, which count from
// the end.
void writeNegative(const InputRequest& request, TextSink& obj, TextSink* /*mtl*/) {
    constexpr std::int64_t SIDE = 16;
    constexpr std::int64_t POINTS = SIDE * SIDE;
    RandomSource random(request.seed);
    const Terrain terrain(request.seed);
    const auto writeNegativeCorner = [&](std::int64_t point) {
        writeCorner(obj, point - POINTS, point - POINTS, point - POINTS);
    };
    for (std::int64_t patch = 0; obj.getByteCount() < request.bytes; ++patch) {
        for (std::int64_t point = 0; point < POINTS; ++point) {
            const std::int64_t column = patch * SIDE + point % SIDE;
            terrain.writePoint(obj, column, point / SIDE);
            obj << "vt";
            obj.writeFixed(random.fraction(), TEXTURE_DECIMALS);
            obj.writeFixed(random.fraction(), TEXTURE_DECIMALS) << "\nvn";
            for (int axis = 0; axis < 3; ++axis)
                obj.writeFixed(2 * random.fraction() - 1, NORMAL_DECIMALS);
            obj << "\n";
        }
        for (std::int64_t cell = 0; cell < (SIDE - 1) * (SIDE - 1); ++cell) {
            const std::int64_t a = cell / (SIDE - 1) * SIDE + cell % (SIDE - 1);
            for (const std::int64_t third : {a + SIDE, a + SIDE + 1}) {
                obj << "f";
                writeNegativeCorner(third == a + SIDE ? a : a + SIDE);
                writeNegativeCorner(a + 1);
                writeNegativeCorner(third);
                obj << "\n";
            }
        }
    }
}

// The triangles of a grid, each with three vertices of its own: every point
// stands in the file six times.
void writeDuplicates(const InputRequest& request, TextSink& obj, TextSink* /*mtl*/) {
    constexpr double FIXED_BYTES_PER_CELL = 6 * 32.5 + 2 * 5;
    constexpr double INDICES_PER_CELL = 6;
    const GridSize size(
        cellsForBytes(static_cast<double>(request.bytes), FIXED_BYTES_PER_CELL, INDICES_PER_CELL));
    const Terrain terrain(request.seed);
    std::int64_t next = 1;
    for (std::int64_t row = 0; row < size.rows; ++row) {
        for (std::int64_t column = 0; column < size.columns; ++column) {
            for (int half = 0; half < 2; ++half) {
                terrain.writePoint(obj, column + half, row);
                terrain.writePoint(obj, column + 1, row + half);
                terrain.writePoint(obj, column, row + 1);
                writeTriangle(obj, next, next + 1, next + 2);
                next += 3;
            }
        }
    }
}

// Flat convex quads and pentagons by turns, with texture points.
void writePentagons(const InputRequest& request, TextSink& obj, TextSink* /*mtl*/) {
    constexpr int QUAD_CORNERS = 4;
    RandomSource random(request.seed);
    std::int64_t firstVertex = 1;
    for (int polygon = 0; obj.getByteCount() < request.bytes; ++polygon) {
        const int corners = QUAD_CORNERS + polygon % 2;
        const double centreX = 1000 * random.fraction();
        const double centreY = 1000 * random.fraction();
        const double height = 100 * random.fraction();
        for (int corner = 0; corner < corners; ++corner) {
            double x = 0;
            double y = 0;
            pointOnCircle(static_cast<double>(corner) / corners, x, y);
            obj << "v";
            obj.writeFixed(centreX + x, DECIMALS);
            obj.writeFixed(centreY + y, DECIMALS);
            obj.writeFixed(height, DECIMALS) << "\nvt";
            obj.writeFixed((1 + x) / 2, TEXTURE_DECIMALS);
            obj.writeFixed((1 + y) / 2, TEXTURE_DECIMALS) << "\n";
        }
        obj << "f";
        for (std::int64_t corner = firstVertex; corner < firstVertex + corners; ++corner)
            obj << " " << corner << "/" << corner;
        obj << "\n";
        firstVertex += corners;
    }
}

// --- Files that show what one kind of statement costs ------------------------

constexpr int COST_MATERIALS = 20'000;
constexpr int COST_GROUPS = 70'000;
constexpr int COST_SWITCHES = 200'000;

// A triangle grid in which statements stand between the cells, evenly.
//
// writeStatement(n) writes the n-th; cost: the bytes that the rest of the file
// may have.
template <typename WriteStatement>
void writeGridWithStatements(const InputRequest& request, TextSink& obj, double bytesElsewhere,
                             std::int64_t statements, WriteStatement writeStatement) {
    const Terrain terrain(request.seed);
    const GridSize size = triangleGridOf(static_cast<double>(request.bytes) - bytesElsewhere);
    writeGridVertices(size, terrain, obj);
    std::int64_t written = 0;
    for (std::int64_t row = 0; row < size.rows; ++row) {
        for (std::int64_t column = 0; column < size.columns; ++column) {
            const std::int64_t cell = row * size.columns + column;
            const std::int64_t cells = size.rows * size.columns;
            for (; written * cells <= cell * statements; ++written)
                writeStatement(written);
            writeGridCell(obj, size, column, row);
        }
    }
}

// A library of 20,000 materials, each used.
void writeManyMaterials(const InputRequest& request, TextSink& obj, TextSink* mtl) {
    constexpr double BYTES_PER_SWITCH = 23;
    RandomSource random(request.seed);
    for (int material = 0; material < COST_MATERIALS; ++material)
        writeMaterial(*mtl, material, random);
    obj << "mtllib " << request.libraryName << "\n";
    writeGridWithStatements(
        request, obj, static_cast<double>(mtl->getByteCount()) + BYTES_PER_SWITCH * COST_MATERIALS,
        COST_MATERIALS, [&](std::int64_t number) { obj << "usemtl material_" << number << "\n"; });
}

void writeManyGroups(const InputRequest& request, TextSink& obj, TextSink* /*mtl*/) {
    constexpr double BYTES_PER_GROUP = 14;
    writeGridWithStatements(request, obj, BYTES_PER_GROUP * COST_GROUPS, COST_GROUPS,
                            [&](std::int64_t number) { obj << "g group_" << number << "\n"; });
}

// 200,000 usemtl over a hundred materials.
void writeManySwitches(const InputRequest& request, TextSink& obj, TextSink* mtl) {
    constexpr int MATERIALS = 100;
    constexpr double BYTES_PER_SWITCH = 19;
    RandomSource random(request.seed);
    for (int material = 0; material < MATERIALS; ++material)
        writeMaterial(*mtl, material, random);
    obj << "mtllib " << request.libraryName << "\n";
    writeGridWithStatements(
        request, obj, static_cast<double>(mtl->getByteCount()) + BYTES_PER_SWITCH * COST_SWITCHES,
        COST_SWITCHES,
        [&](std::int64_t number) { obj << "usemtl material_" << number % MATERIALS << "\n"; });
}

constexpr Shape SHAPES[] = {
    {"grid", "triangle grid, six decimals, v and f only", false, false, false, &writeGrid},
    {"quads", "v/vt/vn and convex quads", true, false, false, &writeQuads},
    {"groups", "boxes, each with a g and a usemtl, and a library", false, false, true,
     &writeGroups},
    {"decimals", "17 digits, every other number with an exponent", false, false, false,
     &writeDecimals},
    {"polygons", "polygons of 5 to 40 corners, every other one concave", false, true, false,
     &writePolygons},
    {"negative", "v/vt/vn, all indices counted from the end", false, false, false, &writeNegative},
    {"duplicates", "every triangle with its own three vertices", false, false, false,
     &writeDuplicates},
};

constexpr Shape COST_SHAPES[] = {
    {"plain", "triangle grid of that size", false, false, false, &writeGrid},
    {"materials20000", "20,000 materials, each used once", false, false, true, &writeManyMaterials},
    {"groups70000", "70,000 groups", false, false, false, &writeManyGroups},
    {"usemtl200000", "200,000 usemtl over 100 materials", false, false, true, &writeManySwitches},
};

constexpr Shape OTHER_SHAPES[] = {
    {"pentagons", "convex quads and pentagons by turns", true, true, false, &writePentagons},
};

}  // namespace

std::span<const Shape> getShapes() {
    return SHAPES;
}

std::span<const Shape> getCostShapes() {
    return COST_SHAPES;
}

const Shape* findShape(const std::string& name) {
    for (const std::span<const Shape> shapes :
         {getShapes(), getCostShapes(), std::span<const Shape>(OTHER_SHAPES)}) {
        const auto found = std::find_if(shapes.begin(), shapes.end(),
                                        [&](const Shape& shape) { return shape.name == name; });
        if (found != shapes.end())
            return &*found;
    }
    return nullptr;
}

}  // namespace obj_adapter::bench
