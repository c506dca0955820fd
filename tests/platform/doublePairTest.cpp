// platform/doublePair.h: each place computes as a double does.
#include "platform/doublePair.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>

namespace obj_adapter::test {

namespace {

using platform::DoublePair;

const double VALUES[] = {0.0,
                         -0.0,
                         1.0,
                         -1.0 / 3.0,
                         1e-310,
                         -std::numeric_limits<double>::denorm_min(),
                         1.7e308,
                         std::numeric_limits<double>::infinity(),
                         -std::numeric_limits<double>::infinity(),
                         std::numeric_limits<double>::quiet_NaN()};

// Whether one value in each of the pair's places is not negative, and what the sign bits
// of 1 / value say, so that zeros are told apart.
void expectPlaces(DoublePair pair, double first, double second) {
    const unsigned expected = (first >= 0.0 ? 1U : 0U) | (second >= 0.0 ? 2U : 0U);
    const DoublePair zero(0.0);
    EXPECT_EQ(areNotNegative(pair, zero, zero), expected) << first << " " << second;
    EXPECT_EQ(areNotNegative(zero, pair, zero), expected) << first << " " << second;
    EXPECT_EQ(areNotNegative(zero, zero, pair), expected) << first << " " << second;
}

// Equal if neither difference is negative either way round; not for infinities.
void expectEqual(DoublePair pair, double first, double second) {
    const double both[] = {first, second};
    const DoublePair expected = DoublePair::load(both);
    const bool isFirstFinite = first - first == 0.0;
    const bool isSecondFinite = second - second == 0.0;
    const unsigned finite = (isFirstFinite ? 1U : 0U) | (isSecondFinite ? 2U : 0U);
    EXPECT_EQ(areNotNegative(pair - expected, expected - pair, DoublePair(0.0)), finite)
        << first << " " << second;
    expectPlaces(pair, first, second);
}

}  // namespace

TEST(DoublePairTest, computesInBothPlacesAsADoubleDoes) {
    for (const double a : VALUES) {
        for (const double b : VALUES) {
            const double two[] = {a, b};
            const double turned[] = {b, a};
            const DoublePair pair = DoublePair::load(two);
            const DoublePair other = DoublePair::load(turned);
            expectEqual(pair, a, b);
            EXPECT_EQ(areEqual(pair, other), a == b ? 3U : 0U);
            EXPECT_EQ(areEqual(pair, DoublePair(a)), (a == a ? 1U : 0U) | (b == a ? 2U : 0U));
            expectEqual(DoublePair(a), a, a);
            expectEqual(pair + other, a + b, b + a);
            expectEqual(pair - other, a - b, b - a);
            expectEqual(pair * other, a * b, b * a);
            expectEqual(pair * DoublePair(1.0 / 3.0), a * (1.0 / 3.0), b * (1.0 / 3.0));
        }
    }
}

TEST(DoublePairTest, loadsFromAnyPlace) {
    const double values[] = {1.0, -2.0, 3.0, -4.0};
    for (int place = 0; place < 3; ++place) {
        SCOPED_TRACE(place);
        expectEqual(DoublePair::load(values + place), values[place], values[place + 1]);
    }
}

}  // namespace obj_adapter::test
