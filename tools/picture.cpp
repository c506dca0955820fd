// Draws a model. Covered by tests/tools/pictureTest.cpp.
#include "picture.h"

#include "angles.h"
#include "camera.h"
#include "cornerNormals.h"
#include "materialLook.h"
#include "rasteriser.h"
#include "shading.h"
#include "srgb.h"

#include <algorithm>

namespace obj_adapter::tool {

namespace {

class Painter {
public:
    Painter(const ModelAccess& importedModel, const PictureOptions& pictureOptions)
        : model(importedModel),
          options(pictureOptions),
          grid(options.width * options.samples, options.height * options.samples),
          camera(model, options, grid.getWidth(), grid.getHeight()),
          normals(model, sineAndCosine(options.creaseAngle).cosine),
          looks(computeLooks(model)) {}

    Picture paint() {
        if (camera.seesAnything())
            drawFaces();
        return resolve();
    }

private:
    // Opaque faces hide what is behind them; the others are drawn over them,
    // the farthest first.
    void drawFaces() {
        struct Distant {
            double nearness;
            int face;
        };
        std::vector<Distant> translucent;
        for (int index = 0; index < model.getNumberOfFaces(); ++index) {
            const Face& face = model.getFace(index);
            if (!model.isDrawable(face))
                continue;
            const double alpha = lookOf(looks, model, face).alpha;
            if (alpha >= 1.0)
                drawFace(index);
            else if (alpha > 0.0)
                translucent.push_back({nearnessOf(face), index});
        }
        std::stable_sort(
            translucent.begin(), translucent.end(),
            [](const Distant& a, const Distant& b) { return a.nearness < b.nearness; });
        for (const Distant& distant : translucent)
            drawFace(distant.face);
    }

    // Of the middle.
    double nearnessOf(const Face& face) const {
        Vector3 sum;
        for (const FaceElement& corner : face.elements)
            sum = sum + camera.turnPosition(model.getPosition(corner.vertexIndex));
        return camera.project(sum * (1.0 / CORNERS_PER_FACE)).nearness;
    }

    void drawFace(int index) {
        const Face& face = model.getFace(index);
        const MaterialLook& look = lookOf(looks, model, face);
        Vector3 positions[CORNERS_PER_FACE];
        Vector3 cornerNormals[CORNERS_PER_FACE];
        SeenTriangle seen{};
        for (int corner = 0; corner < CORNERS_PER_FACE; ++corner) {
            positions[corner] =
                camera.turnPosition(model.getPosition(face.elements[corner].vertexIndex));
            cornerNormals[corner] =
                camera.turnDirection(normals.getNormal(normals.indexOf(index, corner)));
            seen.corners[corner] = camera.project(positions[corner]);
        }
        turnToEye(positions, cornerNormals);
        const auto mix = [](const Vector3(&values)[CORNERS_PER_FACE], const double(&shares)[3]) {
            return values[0] * shares[0] + values[1] * shares[1] + values[2] * shares[2];
        };
        drawTriangle(grid, seen, look.alpha, [&](const double(&shares)[3]) {
            return shade(look, unitVector(mix(cornerNormals, shares)),
                         camera.towardsEye(mix(positions, shares)));
        });
    }

    // Both sides of a face are lit alike. The side that is seen is that of the face
    // itself: a smooth normal may well point a little away from the eye.
    void turnToEye(const Vector3 (&positions)[CORNERS_PER_FACE],
                   Vector3 (&cornerNormals)[CORNERS_PER_FACE]) const {
        Vector3 side = crossProduct(positions[1] - positions[0], positions[2] - positions[0]);
        if (dotProduct(side, camera.towardsEye(positions[0])) < 0.0)
            side = -side;
        for (Vector3& normal : cornerNormals) {
            if (dotProduct(normal, side) < 0.0)
                normal = -normal;
        }
    }

    // The mean of the samples of each pixel, over the background.
    Picture resolve() const {
        Picture picture{options.width, options.height, {}};
        picture.bytes.reserve(static_cast<std::size_t>(options.width) *
                              static_cast<std::size_t>(options.height) * 4);
        for (int y = 0; y < options.height; ++y) {
            for (int x = 0; x < options.width; ++x)
                appendPixel(picture.bytes, x, y);
        }
        return picture;
    }

    void appendPixel(std::vector<std::uint8_t>& bytes, int x, int y) const {
        double sums[4] = {0.0, 0.0, 0.0, 0.0};
        for (int row = 0; row < options.samples; ++row) {
            for (int column = 0; column < options.samples; ++column) {
                const SampleGrid::Sample& sample =
                    grid.at(x * options.samples + column, y * options.samples + row);
                sums[0] += static_cast<double>(sample.red);
                sums[1] += static_cast<double>(sample.green);
                sums[2] += static_cast<double>(sample.blue);
                sums[3] += static_cast<double>(sample.coverage);
            }
        }
        const double count = static_cast<double>(options.samples) * options.samples;
        const double coverage = std::min(sums[3] / count, 1.0);
        appendColor(bytes, sums, count, coverage);
    }

    // A PNG file's colours are not weighted by their alpha.
    void appendColor(std::vector<std::uint8_t>& bytes, const double (&sums)[4], double count,
                     double coverage) const {
        const PixelColor& background = options.background;
        const double behind = (1.0 - coverage) * static_cast<double>(background.alpha) / 255.0;
        const double alpha = coverage + behind;
        const std::uint8_t channels[3] = {background.red, background.green, background.blue};
        for (int channel = 0; channel < 3; ++channel) {
            const double light =
                sums[channel] / count + decodeSrgb(static_cast<double>(channels[channel])) * behind;
            bytes.push_back(alpha > 0.0 ? encodeSrgb(light / alpha) : std::uint8_t{0});
        }
        bytes.push_back(static_cast<std::uint8_t>(alpha * 255.0 + 0.5));
    }

    const ModelAccess& model;
    const PictureOptions& options;
    SampleGrid grid;
    Camera camera;
    CornerNormals normals;
    std::vector<MaterialLook> looks;
};

}  // namespace

Picture drawPicture(const ModelAccess& model, const PictureOptions& options) {
    return Painter(model, options).paint();
}

}  // namespace obj_adapter::tool
