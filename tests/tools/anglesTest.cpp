// Sine and cosine without the mathematical library.
#include "angles.h"

#include <gtest/gtest.h>

#include <cmath>

namespace obj_adapter::test {

namespace {

struct ExactAngle {
    double degrees;
    double sine;
    double cosine;
};

const ExactAngle EXACT_ANGLES[] = {
    {0, 0, 1},    {90, 1, 0},  {180, 0, -1},  {270, -1, 0}, {360, 0, 1},
    {-90, -1, 0}, {450, 1, 0}, {-180, 0, -1}, {720, 0, 1},
};

TEST(AnglesTest, RightAnglesAreExact) {
    for (const ExactAngle& row : EXACT_ANGLES) {
        const auto [sine, cosine] = tool::sineAndCosine(row.degrees);
        EXPECT_EQ(sine, row.sine) << row.degrees;
        EXPECT_EQ(cosine, row.cosine) << row.degrees;
    }
}

TEST(AnglesTest, OthersAgreeWithTheMathematicalLibrary) {
    constexpr double RADIANS_OF_A_DEGREE = 3.14159265358979323846 / 180.0;
    for (double degrees = -360.0; degrees <= 360.0; degrees += 0.37) {
        const auto [sine, cosine] = tool::sineAndCosine(degrees);
        EXPECT_NEAR(sine, std::sin(degrees * RADIANS_OF_A_DEGREE), 2e-15) << degrees;
        EXPECT_NEAR(cosine, std::cos(degrees * RADIANS_OF_A_DEGREE), 2e-15) << degrees;
    }
}

}  // namespace

}  // namespace obj_adapter::test
