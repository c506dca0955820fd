// The camera has the whole of a model in its picture, whatever the model.
#include "camera.h"

#include "tools/importedText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace obj_adapter::test {

namespace {

constexpr int WIDTH = 400;
constexpr int HEIGHT = 300;

// The margin on each side of the picture's shorter direction and of the other.
constexpr double MARGIN_X = WIDTH * 0.04;
constexpr double MARGIN_Y = HEIGHT * 0.04;

struct SeenBox {
    double left = 1e9;
    double right = -1e9;
    double top = 1e9;
    double bottom = -1e9;
    double nearest = 0.0;
};

SeenBox look(const tool::ModelAccess& model, const tool::PictureOptions& options) {
    const tool::Camera camera(model, options, WIDTH, HEIGHT);
    EXPECT_TRUE(camera.seesAnything());
    SeenBox box;
    for (int index = 0; index < model.getNumberOfFaces(); ++index) {
        const Face& face = model.getFace(index);
        for (const FaceElement& corner : face.elements) {
            if (!model.isDrawable(face))
                continue;
            const tool::SeenPoint point =
                camera.project(camera.turnPosition(model.getPosition(corner.vertexIndex)));
            box.left = std::min(box.left, point.x);
            box.right = std::max(box.right, point.x);
            box.top = std::min(box.top, point.y);
            box.bottom = std::max(box.bottom, point.y);
            box.nearest = std::max(box.nearest, point.nearness);
        }
    }
    return box;
}

// Inside on all sides, and touching the margin on two sides that are opposite.
void expectFilled(const SeenBox& box) {
    constexpr double ROUNDING = 1e-6;
    EXPECT_GE(box.left, MARGIN_X - ROUNDING);
    EXPECT_LE(box.right, WIDTH - MARGIN_X + ROUNDING);
    EXPECT_GE(box.top, MARGIN_Y - ROUNDING);
    EXPECT_LE(box.bottom, HEIGHT - MARGIN_Y + ROUNDING);
    const double slackX = box.left - MARGIN_X + (WIDTH - MARGIN_X - box.right);
    const double slackY = box.top - MARGIN_Y + (HEIGHT - MARGIN_Y - box.bottom);
    EXPECT_NEAR(std::min(slackX, slackY), 0.0, ROUNDING);
    // In the middle in both directions.
    EXPECT_NEAR(box.left - MARGIN_X, WIDTH - MARGIN_X - box.right, ROUNDING);
    EXPECT_NEAR(box.top - MARGIN_Y, HEIGHT - MARGIN_Y - box.bottom, ROUNDING);
    EXPECT_GT(box.nearest, 0.0);
}

struct ModelCase {
    const char* title;
    const char* objText;
};

const ModelCase MODELS[] = {
    {"a tetrahedron", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 2 3\nf 1 2 4\nf 2 3 4\nf 1 3 4\n"},
    {"long and thin", "v 0 0 0\nv 100 0 0\nv 0 1 0\nf 1 2 3\n"},
    {"far away", "v 1e9 0 0\nv 1000000001 0 0\nv 1e9 1 0\nf 1 2 3\n"},
    {"enormous", "v -1e308 0 0\nv 1e308 0 0\nv 0 1e308 0\nf 1 2 3\n"},
    {"tiny", "v 0 0 0\nv 1e-200 0 0\nv 0 1e-200 0\nf 1 2 3\n"},
    {"beside a vertex that no face uses", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1e6 0 0\nf 1 2 3\n"},
    {"beside a face at no finite place",
     "v 0 0 0\nv 1 0 0\nv 0 1 0\nv inf 0 0\nf 1 2 3\nf 1 2 4\n"},
};

TEST(CameraTest, TheModelFillsThePicture) {
    for (const ModelCase& row : MODELS) {
        const ImportedText imported(row.objText);
        for (const tool::UpAxis up : {tool::UpAxis::Y, tool::UpAxis::Z}) {
            for (const double azimuth : {0.0, 35.0, 180.0, -75.0}) {
                SCOPED_TRACE(std::string(row.title) + " " + std::to_string(azimuth));
                tool::PictureOptions options;
                options.up = up;
                options.azimuth = azimuth;
                expectFilled(look(imported.getModel(), options));
            }
        }
    }
}

TEST(CameraTest, APlaneFromItsEdgeAndASinglePoint) {
    tool::PictureOptions options;
    options.azimuth = 90.0;
    options.elevation = 0.0;
    for (const char* text :
         {"v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n", "v 5 5 5\nv 5 5 6\nv 5 5 7\nf 1 2 3\n"}) {
        const ImportedText imported(text);
        const SeenBox box = look(imported.getModel(), options);
        EXPECT_TRUE(std::isfinite(box.left) && std::isfinite(box.top));
        EXPECT_GE(box.left, 0.0);
        EXPECT_LE(box.bottom, HEIGHT);
    }
}

struct AxisCase {
    tool::UpAxis up;
    double azimuth;
    double elevation;
    tool::Vector3 direction;  // in the model
    tool::Vector3 seen;       // right, up, towards the camera
};

const AxisCase AXES[] = {
    {tool::UpAxis::Y, 0, 0, {1, 0, 0}, {1, 0, 0}},  {tool::UpAxis::Y, 0, 0, {0, 1, 0}, {0, 1, 0}},
    {tool::UpAxis::Y, 0, 0, {0, 0, 1}, {0, 0, 1}},  {tool::UpAxis::Y, 90, 0, {1, 0, 0}, {0, 0, 1}},
    {tool::UpAxis::Y, 0, 90, {0, 1, 0}, {0, 0, 1}}, {tool::UpAxis::Y, 0, 90, {0, 0, 1}, {0, -1, 0}},
    {tool::UpAxis::Z, 0, 0, {1, 0, 0}, {1, 0, 0}},  {tool::UpAxis::Z, 0, 0, {0, 0, 1}, {0, 1, 0}},
    {tool::UpAxis::Z, 0, 0, {0, -1, 0}, {0, 0, 1}}, {tool::UpAxis::Z, 90, 0, {1, 0, 0}, {0, 0, 1}},
};

TEST(CameraTest, Axes) {
    const ImportedText imported(MODELS[0].objText);
    for (const AxisCase& row : AXES) {
        tool::PictureOptions options;
        options.up = row.up;
        options.azimuth = row.azimuth;
        options.elevation = row.elevation;
        const tool::Camera camera(imported.getModel(), options, WIDTH, HEIGHT);
        EXPECT_EQ(camera.turnDirection(row.direction), row.seen)
            << row.azimuth << " " << row.elevation;
    }
}

TEST(CameraTest, NothingToSee) {
    const ImportedText imported("v 0 0 0\nv 1 0 0\nv nan 0 0\nf 1 2 3\n");
    EXPECT_FALSE(tool::Camera(imported.getModel(), {}, WIDTH, HEIGHT).seesAnything());
}

}  // namespace

}  // namespace obj_adapter::test
