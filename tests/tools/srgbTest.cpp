// The curve of sRGB without the mathematical library.
#include "srgb.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace obj_adapter::test {

namespace {

TEST(SrgbTest, DecodingAgreesWithTheDefinition) {
    for (int value = 0; value <= 255; ++value) {
        const double scaled = value / 255.0;
        const double expected =
            scaled <= 0.04045 ? scaled / 12.92 : std::pow((scaled + 0.055) / 1.055, 2.4);
        EXPECT_NEAR(tool::decodeSrgb(value), expected, 1e-15) << value;
    }
}

TEST(SrgbTest, EveryValueComesBack) {
    for (int value = 0; value <= 255; ++value)
        EXPECT_EQ(tool::encodeSrgb(tool::decodeSrgb(value)), value);
}

TEST(SrgbTest, EncodingTakesTheNearest) {
    for (int value = 0; value < 255; ++value) {
        EXPECT_EQ(tool::encodeSrgb(tool::decodeSrgb(value + 0.499)), value);
        EXPECT_EQ(tool::encodeSrgb(tool::decodeSrgb(value + 0.501)), value + 1);
    }
}

TEST(SrgbTest, WhatIsOutsideIsClamped) {
    EXPECT_EQ(tool::encodeSrgb(-1.0), 0);
    EXPECT_EQ(tool::encodeSrgb(7.0), 255);
    EXPECT_EQ(tool::encodeSrgb(std::numeric_limits<double>::infinity()), 255);
    EXPECT_EQ(tool::encodeSrgb(std::numeric_limits<double>::quiet_NaN()), 0);
}

}  // namespace

}  // namespace obj_adapter::test
