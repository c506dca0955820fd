// Draws triangles by edge functions. Covered by tests/tools/rasteriserTest.cpp.
#include "rasteriser.h"

#include <algorithm>
#include <cmath>

namespace obj_adapter::tool {

namespace {

// Corners are rounded to this part of a sample. Products of rounded coordinates
// are then exact in double precision, so that neighbours agree on their side.
constexpr double PARTS_OF_A_SAMPLE = 256.0;

struct GridPoint {
    double x;
    double y;
};

GridPoint roundToGrid(const SeenPoint& point) {
    return {std::nearbyint(point.x * PARTS_OF_A_SAMPLE),
            std::nearbyint(point.y * PARTS_OF_A_SAMPLE)};
}

// Which side of the line from a to b the point is on, and how far, times the
// line's length: twice the area of the three.
double sideOf(const GridPoint& a, const GridPoint& b, const GridPoint& point) {
    return (b.x - a.x) * (point.y - a.y) - (b.y - a.y) * (point.x - a.x);
}

// Of two triangles that share a side, the one that has it at its top or left gets
// the samples on it.
bool ownsSide(const GridPoint& a, const GridPoint& b) {
    return b.y < a.y || (b.y == a.y && b.x > a.x);
}

// The samples whose middles may be inside, of those that there are.
struct Span {
    int first;
    int last;
};

Span spanOf(double low, double high, int count) {
    const double first = std::floor(low / PARTS_OF_A_SAMPLE);
    const double last = std::ceil(high / PARTS_OF_A_SAMPLE);
    return {static_cast<int>(std::clamp(first, 0.0, static_cast<double>(count))),
            static_cast<int>(std::clamp(last, -1.0, static_cast<double>(count - 1)))};
}

void blend(SampleGrid::Sample& sample, const Vector3& color, double alpha) {
    const auto mix = [alpha](float& channel, double value) {
        channel = static_cast<float>(static_cast<double>(channel) * (1.0 - alpha) + value * alpha);
    };
    mix(sample.red, color.x);
    mix(sample.green, color.y);
    mix(sample.blue, color.z);
    mix(sample.coverage, 1.0);
}

class TriangleDrawer {
public:
    TriangleDrawer(SampleGrid& sampleGrid, const SeenTriangle& seenTriangle, double opacity,
                   const ColorAt& colorFunction)
        : grid(sampleGrid), triangle(seenTriangle), alpha(opacity), colorAt(colorFunction) {
        for (int corner = 0; corner < 3; ++corner)
            points[corner] = roundToGrid(triangle.corners[corner]);
        area = sideOf(points[0], points[1], points[2]);
    }

    void draw() {
        if (area == 0.0)
            return;
        const auto [left, right] = std::minmax({points[0].x, points[1].x, points[2].x});
        const auto [top, bottom] = std::minmax({points[0].y, points[1].y, points[2].y});
        const Span columns = spanOf(left, right, grid.getWidth());
        const Span rows = spanOf(top, bottom, grid.getHeight());
        for (int y = rows.first; y <= rows.last; ++y) {
            const Span span = narrow(columns, y);
            for (int x = span.first; x <= span.last; ++x)
                drawSample(x, y);
        }
    }

private:
    // The part of a row that may be inside: a long and thin triangle crosses many
    // rows and has few samples in each. May be too wide, as drawSample() decides.
    Span narrow(Span span, int y) const {
        const double middle = (y + 0.5) * PARTS_OF_A_SAMPLE;
        for (int corner = 0; corner < 3; ++corner) {
            const GridPoint& a = points[corner];
            const GridPoint& b = points[(corner + 1) % 3];
            if (a.y == b.y)
                continue;
            // Where the row crosses the side's line.
            const double crossing = a.x + (b.x - a.x) * ((middle - a.y) / (b.y - a.y));
            const Span wide =
                spanOf(crossing - PARTS_OF_A_SAMPLE, crossing + PARTS_OF_A_SAMPLE, grid.getWidth());
            // Inside is right of a side that runs down, seen clockwise.
            if ((area > 0.0) == (b.y < a.y))
                span.first = std::max(span.first, wide.first);
            else
                span.last = std::min(span.last, wide.last);
        }
        return span;
    }

    // The share of each corner, as the picture shows it. False outside.
    bool findShares(int x, int y, double (&shares)[3]) const {
        const GridPoint middle{(x + 0.5) * PARTS_OF_A_SAMPLE, (y + 0.5) * PARTS_OF_A_SAMPLE};
        for (int corner = 0; corner < 3; ++corner) {
            const GridPoint& a = points[(corner + 1) % 3];
            const GridPoint& b = points[(corner + 2) % 3];
            const double side = area > 0.0 ? sideOf(a, b, middle) : -sideOf(a, b, middle);
            const bool owns = area > 0.0 ? ownsSide(a, b) : ownsSide(b, a);
            if (side < 0.0 || (side == 0.0 && !owns))
                return false;
            shares[corner] = side;
        }
        return true;
    }

    void drawSample(int x, int y) {
        double shares[3];
        if (!findShares(x, y, shares))
            return;
        // Nearness is linear in the picture; shares on the face are their parts
        // of it.
        double sum = 0.0;
        for (int corner = 0; corner < 3; ++corner) {
            shares[corner] *= triangle.corners[corner].nearness;
            sum += shares[corner];
        }
        const auto nearness = static_cast<float>(sum / std::fabs(area));
        float& present = grid.nearnessAt(x, y);
        if (!(nearness > present))
            return;
        for (double& share : shares)
            share /= sum;
        blend(grid.at(x, y), colorAt(shares), alpha);
        if (alpha >= 1.0)
            present = nearness;
    }

    SampleGrid& grid;
    const SeenTriangle& triangle;
    double alpha;
    const ColorAt& colorAt;
    GridPoint points[3]{};
    double area = 0.0;
};

}  // namespace

SampleGrid::SampleGrid(int gridWidth, int gridHeight)
    : width(gridWidth),
      height(gridHeight),
      samples(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)),
      nearness(samples.size()) {}

void drawTriangle(SampleGrid& grid, const SeenTriangle& triangle, double alpha,
                  const ColorAt& colorAt) {
    TriangleDrawer(grid, triangle, alpha, colorAt).draw();
}

}  // namespace obj_adapter::tool
