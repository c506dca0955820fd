// Draws triangles into a picture with a depth for every sample.
#pragma once

#include "camera.h"
#include "vector3.h"

#include <cstddef>
#include <functional>
#include <vector>

namespace obj_adapter::tool {

// Samples in rows from the upper left corner. Colours are linear light, weighted
// by the coverage.
class SampleGrid {
public:
    SampleGrid(int gridWidth, int gridHeight);

    int getWidth() const { return width; }
    int getHeight() const { return height; }

    struct Sample {
        float red = 0.0F;
        float green = 0.0F;
        float blue = 0.0F;
        float coverage = 0.0F;
    };
    Sample& at(int x, int y) { return samples[placeOf(x, y)]; }
    const Sample& at(int x, int y) const { return samples[placeOf(x, y)]; }
    float& nearnessAt(int x, int y) { return nearness[placeOf(x, y)]; }

private:
    std::size_t placeOf(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }

    int width;
    int height;
    std::vector<Sample> samples;
    std::vector<float> nearness;  // 0: nothing there yet
};

// The corners of a triangle as the camera sees them.
struct SeenTriangle {
    SeenPoint corners[3];
};

// The colour of a triangle at a place, which is told by the share of each corner.
using ColorAt = std::function<Vector3(const double (&shares)[3])>;

// Draws what no earlier triangle hides. The sides of neighbours are exact: each
// sample along a shared side belongs to one of them.
//
// alpha  below 1 the triangle is blended over what is there, and hides nothing
//        that is drawn later
void drawTriangle(SampleGrid& grid, const SeenTriangle& triangle, double alpha,
                  const ColorAt& colorAt);

}  // namespace obj_adapter::tool
