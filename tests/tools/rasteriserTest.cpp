// Triangles on a small grid, printed as text.
#include "rasteriser.h"

#include "support/randomSource.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace obj_adapter::test {

namespace {

constexpr int SIZE = 8;

struct Corner {
    double x;
    double y;
    double nearness = 1.0;
};

tool::SeenTriangle makeTriangle(const Corner& a, const Corner& b, const Corner& c) {
    return {{{a.x, a.y, a.nearness}, {b.x, b.y, b.nearness}, {c.x, c.y, c.nearness}}};
}

// Adds as much light to every sample that it covers.
void draw(tool::SampleGrid& grid, const tool::SeenTriangle& triangle, double light,
          double alpha = 1.0) {
    tool::drawTriangle(grid, triangle, alpha, [light](const double(&)[3]) {
        return tool::Vector3{light, light, light};
    });
}

// A row of the grid in a line: the light of each sample, "." for none.
std::string describe(const tool::SampleGrid& grid) {
    std::string text;
    for (int y = 0; y < grid.getHeight(); ++y) {
        for (int x = 0; x < grid.getWidth(); ++x) {
            const auto& sample = grid.at(x, y);
            text += sample.coverage == 0.0F ? std::string(".")
                                            : std::to_string(static_cast<int>(sample.red));
        }
        text += "\n";
    }
    return text;
}

struct DrawCase {
    const char* title;
    tool::SeenTriangle triangle;
    const char* grid;
};

const DrawCase CASES[] = {
    {"the left and upper sides own their samples", makeTriangle({1.5, 1.5}, {6.5, 1.5}, {1.5, 6.5}),
     "........\n"
     ".11111..\n"
     ".1111...\n"
     ".111....\n"
     ".11.....\n"
     ".1......\n"
     "........\n"
     "........\n"},
    {"the same the other way round", makeTriangle({1.5, 6.5}, {6.5, 1.5}, {1.5, 1.5}),
     "........\n"
     ".11111..\n"
     ".1111...\n"
     ".111....\n"
     ".11.....\n"
     ".1......\n"
     "........\n"
     "........\n"},
    {"the right and lower sides do not", makeTriangle({6.5, 1.5}, {6.5, 6.5}, {1.5, 6.5}),
     "........\n"
     "........\n"
     ".....1..\n"
     "....11..\n"
     "...111..\n"
     "..1111..\n"
     "........\n"
     "........\n"},
    {"outside of the grid", makeTriangle({-20, -20}, {-10, -20}, {-20, -10}),
     "........\n........\n........\n........\n........\n........\n........\n........\n"},
    {"larger than the grid", makeTriangle({-50, -50}, {100, -50}, {-50, 100}),
     "11111111\n11111111\n11111111\n11111111\n11111111\n11111111\n11111111\n11111111\n"},
    {"a line has no samples", makeTriangle({0, 0}, {4, 4}, {8, 8}),
     "........\n........\n........\n........\n........\n........\n........\n........\n"},
};

TEST(RasteriserTest, Cases) {
    for (const DrawCase& row : CASES) {
        SCOPED_TRACE(row.title);
        tool::SampleGrid grid(SIZE, SIZE);
        draw(grid, row.triangle, 1.0);
        EXPECT_EQ(describe(grid), row.grid);
    }
}

TEST(RasteriserTest, TheNearerOneHidesTheOther) {
    const Corner far[] = {{0, 0, 0.5}, {16, 0, 0.5}, {0, 16, 0.5}};
    const Corner near[] = {{0, 0, 0.9}, {6, 0, 0.9}, {0, 6, 0.9}};
    for (const bool nearFirst : {true, false}) {
        tool::SampleGrid grid(SIZE, SIZE);
        if (nearFirst)
            draw(grid, makeTriangle(near[0], near[1], near[2]), 2.0);
        draw(grid, makeTriangle(far[0], far[1], far[2]), 1.0);
        if (!nearFirst)
            draw(grid, makeTriangle(near[0], near[1], near[2]), 2.0);
        EXPECT_EQ(describe(grid),
                  "22222111\n22221111\n22211111\n22111111\n21111111\n11111111\n11111111\n"
                  "11111111\n");
    }
}

TEST(RasteriserTest, OfTwoAtOnePlaceTheFirstStays) {
    tool::SampleGrid grid(SIZE, SIZE);
    const tool::SeenTriangle whole = makeTriangle({0, 0}, {16, 0}, {0, 16});
    draw(grid, whole, 1.0);
    draw(grid, whole, 2.0);
    EXPECT_EQ(grid.at(3, 3).red, 1.0F);
}

TEST(RasteriserTest, ATranslucentOneIsBlendedAndHidesNothing) {
    tool::SampleGrid grid(SIZE, SIZE);
    draw(grid, makeTriangle({0, 0, 0.9}, {16, 0, 0.9}, {0, 16, 0.9}), 1.0, 0.25);
    EXPECT_EQ(grid.at(2, 2).red, 0.25F);
    EXPECT_EQ(grid.at(2, 2).coverage, 0.25F);
    draw(grid, makeTriangle({0, 0, 0.5}, {16, 0, 0.5}, {0, 16, 0.5}), 1.0, 1.0);
    EXPECT_EQ(grid.at(2, 2).red, 1.0F);
    EXPECT_EQ(grid.at(2, 2).coverage, 1.0F);
}

// A fan about a random point covers the grid once and only once.
TEST(RasteriserTest, NeighboursLeaveNoGapAndDoNotOverlap) {
    RandomSource random(20240517);
    for (int round = 0; round < 200; ++round) {
        const auto inGrid = [&random] { return static_cast<double>(random.below(8000)) / 1000.0; };
        const Corner middle{inGrid(), inGrid()};
        const Corner corners[] = {{-1, -1}, {inGrid(), -1}, {9, -1}, {9, inGrid()},
                                  {9, 9},   {inGrid(), 9},  {-1, 9}, {-1, inGrid()}};
        tool::SampleGrid grid(SIZE, SIZE);
        for (std::size_t corner = 0; corner < std::size(corners); ++corner)
            draw(grid,
                 makeTriangle(middle, corners[corner], corners[(corner + 1) % std::size(corners)]),
                 1.0, 0.5);
        for (int y = 0; y < SIZE; ++y) {
            for (int x = 0; x < SIZE; ++x)
                ASSERT_EQ(grid.at(x, y).coverage, 0.5F) << round << " at " << x << " " << y;
        }
    }
}

// The shares are those on the face, not those in the picture: in the middle of the
// picture of a face that leads away, its near end has the larger part.
TEST(RasteriserTest, SharesAreOnTheFace) {
    tool::SampleGrid grid(2, 1);
    double nearShare = 0.0;
    const tool::SeenTriangle away = makeTriangle({0, -50, 1.0}, {0, 50, 1.0}, {1, 0, 0.25});
    tool::drawTriangle(grid, away, 1.0, [&nearShare](const double(&shares)[3]) {
        nearShare = shares[0] + shares[1];
        return tool::Vector3{};
    });
    // At 0.5: 0.5 * 1 to 0.5 * 0.25.
    EXPECT_NEAR(nearShare, 0.8, 1e-12);
}

}  // namespace

}  // namespace obj_adapter::test
