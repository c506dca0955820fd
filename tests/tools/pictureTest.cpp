// Pictures of small models, pixel by pixel where it matters.
#include "picture.h"

#include "shading.h"
#include "tools/importedText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

// Seen from the front, so that x runs to the right and y up.
tool::PictureOptions smallPicture() {
    tool::PictureOptions options;
    options.width = 40;
    options.height = 40;
    options.samples = 2;
    options.azimuth = 0.0;
    options.elevation = 0.0;
    options.background = {10, 20, 30, 255};
    return options;
}

tool::PixelColor pixelAt(const tool::Picture& picture, int x, int y) {
    const std::size_t place =
        (static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
         static_cast<std::size_t>(x)) *
        4;
    return {picture.bytes[place], picture.bytes[place + 1], picture.bytes[place + 2],
            picture.bytes[place + 3]};
}

std::string describe(const tool::PixelColor& pixel) {
    return std::to_string(pixel.red) + " " + std::to_string(pixel.green) + " " +
           std::to_string(pixel.blue) + " " + std::to_string(pixel.alpha);
}

const char* const SQUARE = "v -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\n";
const char* const RED = "newmtl red\nKd 0.8 0 0\n";

TEST(PictureTest, ARedSquareBeforeTheBackground) {
    const ImportedText imported(std::string("mtllib a.mtl\n") + SQUARE + "usemtl red\nf 1 2 3 4\n",
                                {{"a.mtl", RED}});
    const tool::Picture picture = tool::drawPicture(imported.getModel(), smallPicture());
    ASSERT_EQ(picture.bytes.size(), 40U * 40U * 4U);
    EXPECT_EQ(describe(pixelAt(picture, 0, 0)), "10 20 30 255");
    EXPECT_EQ(describe(pixelAt(picture, 39, 39)), "10 20 30 255");
    const tool::PixelColor middle = pixelAt(picture, 20, 20);
    EXPECT_GT(middle.red, 150);
    EXPECT_EQ(middle.green, 0);
    EXPECT_EQ(middle.blue, 0);
    EXPECT_EQ(middle.alpha, 255);
}

// The back is lit like the front, so that winding does not matter.
TEST(PictureTest, BothSidesLookAlike) {
    std::vector<tool::Picture> pictures;
    for (const char* face : {"f 1 2 3 4\n", "f 4 3 2 1\n"}) {
        const ImportedText imported(std::string(SQUARE) + face);
        pictures.push_back(tool::drawPicture(imported.getModel(), smallPicture()));
    }
    EXPECT_EQ(describe(pixelAt(pictures[0], 20, 20)), describe(pixelAt(pictures[1], 20, 20)));
}

TEST(PictureTest, TheNearerFaceHidesTheOther) {
    const std::string materials = std::string(RED) + "newmtl green\nKd 0 0.8 0\n";
    const ImportedText imported(std::string("mtllib a.mtl\n") + SQUARE +
                                    "v -0.5 -0.5 0.3\nv 0.5 -0.5 0.3\nv 0.5 0.5 0.3\n"
                                    "v -0.5 0.5 0.3\n"
                                    "usemtl green\nf 5 6 7 8\nusemtl red\nf 1 2 3 4\n",
                                {{"a.mtl", materials}});
    const tool::Picture picture = tool::drawPicture(imported.getModel(), smallPicture());
    EXPECT_EQ(pixelAt(picture, 20, 20).red, 0);
    EXPECT_GT(pixelAt(picture, 20, 20).green, 150);
    EXPECT_GT(pixelAt(picture, 4, 20).red, 150);
}

TEST(PictureTest, AGlassBeforeAWallLetsItThrough) {
    const std::string materials = std::string(RED) + "newmtl glass\nKd 0 0.8 0\nd 0.5\n";
    const ImportedText imported(std::string("mtllib a.mtl\n") + SQUARE +
                                    "v -0.5 -0.5 0.3\nv 0.5 -0.5 0.3\nv 0.5 0.5 0.3\n"
                                    "v -0.5 0.5 0.3\n"
                                    "usemtl glass\nf 5 6 7 8\nusemtl red\nf 1 2 3 4\n",
                                {{"a.mtl", materials}});
    const tool::Picture picture = tool::drawPicture(imported.getModel(), smallPicture());
    EXPECT_GT(pixelAt(picture, 20, 20).red, 100);
    EXPECT_GT(pixelAt(picture, 20, 20).green, 100);
}

TEST(PictureTest, TransparentBackground) {
    const ImportedText imported(std::string(SQUARE) + "f 1 2 3\n");
    tool::PictureOptions options = smallPicture();
    options.background = {0, 0, 0, 0};
    const tool::Picture picture = tool::drawPicture(imported.getModel(), options);
    EXPECT_EQ(describe(pixelAt(picture, 0, 0)), "0 0 0 0");
    const tool::PixelColor inside = pixelAt(picture, 30, 30);
    EXPECT_EQ(inside.alpha, 255);
    // A pixel on the slanted side is partly covered and has the colour of the face,
    // not one darkened by the background.
    int partly = 0;
    for (int place = 0; place < 40; ++place) {
        for (int x = 0; x < 40; ++x) {
            const tool::PixelColor pixel = pixelAt(picture, x, place);
            if (pixel.alpha == 0 || pixel.alpha == 255)
                continue;
            ++partly;
            EXPECT_EQ(pixel.red, inside.red);
        }
    }
    EXPECT_GT(partly, 10);
}

TEST(PictureTest, NoFacesAndNoFinitePlace) {
    for (const char* text :
         {"v 0 0 0\n", "v nan 0 0\nv 0 inf 0\nv 0 0 0\nf 1 2 3\n", "f 1 2 3\n"}) {
        const ImportedText imported(text);
        const tool::Picture picture = tool::drawPicture(imported.getModel(), smallPicture());
        for (int x = 0; x < 40; ++x)
            ASSERT_EQ(describe(pixelAt(picture, x, 20)), "10 20 30 255") << text;
    }
}

// From one corner to the other, and less than a sample wide near its end: nothing
// but the samples that are inside is drawn, and no row is left out before.
TEST(PictureTest, ASliver) {
    const ImportedText imported("v -1 -1 0\nv -1 -0.6 0\nv 1 1 0\nf 1 2 3\n");
    const tool::Picture picture = tool::drawPicture(imported.getModel(), smallPicture());
    const std::string background = "10 20 30 255";
    int rows = 0;
    for (int y = 0; y < 40; ++y) {
        int covered = 0;
        for (int x = 0; x < 40; ++x)
            covered += describe(pixelAt(picture, x, y)) == background ? 0 : 1;
        EXPECT_LE(covered, 10) << y;
        rows += covered > 0 ? 1 : 0;
    }
    EXPECT_GE(rows, 34);
}

TEST(ShadingTest, TheKeyLightComesFromTheUpperLeft) {
    const tool::MaterialLook look;
    const tool::Vector3 eye{0, 0, 1};
    const double upperLeft = tool::shade(look, tool::unitVector({-1, 1, 1}), eye).x;
    const double upperRight = tool::shade(look, tool::unitVector({1, 1, 1}), eye).x;
    const double below = tool::shade(look, tool::unitVector({0, -1, 0.1}), eye).x;
    EXPECT_GT(upperLeft, upperRight);
    EXPECT_GT(upperRight, below);
    // Never quite dark.
    EXPECT_GT(below, 0.05);
}

TEST(ShadingTest, AHighlightIsAddedWhereTheLightIsReflected) {
    tool::MaterialLook look;
    const tool::Vector3 eye{0, 0, 1};
    const tool::Vector3 between = tool::unitVector(tool::unitVector({-0.50, 0.60, 0.75}) + eye);
    const double dull = tool::shade(look, between, eye).x;
    look.specular = {1, 1, 1};
    look.exponent = 50;
    EXPECT_NEAR(tool::shade(look, between, eye).x - dull, 0.78, 0.05);
    // The exponent makes it small.
    const tool::Vector3 aside = tool::unitVector({0.6, 0.6, 0.5});
    const double glossy = tool::shade(look, aside, eye).x;
    look.exponent = 0;
    EXPECT_NEAR(glossy, tool::shade(look, aside, eye).x, 0.02);
}

}  // namespace

}  // namespace obj_adapter::test
