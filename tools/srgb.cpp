// The curve of sRGB without pow(). Covered by tests/tools/srgbTest.cpp.
#include "srgb.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace obj_adapter::tool {

namespace {

constexpr double GREATEST = 255.0;

// The fifth root of 0 < value <= 1 by Newton's method from above, where it falls
// steadily; the number of steps is fixed.
double fifthRoot(double value) {
    constexpr int STEPS = 60;
    double root = 1.0;
    for (int step = 0; step < STEPS; ++step) {
        const double fourth = root * root * root * root;
        root = (4.0 * root + value / fourth) / 5.0;
    }
    return root;
}

// Between two neighbouring values lies the light at which the nearer one changes.
std::array<double, 255> makeThresholds() {
    std::array<double, 255> thresholds{};
    for (std::size_t value = 0; value < thresholds.size(); ++value)
        thresholds[value] = decodeSrgb(static_cast<double>(value) + 0.5);
    return thresholds;
}

}  // namespace

// IEC 61966-2-1: linear below 0.04045, above it the power 2.4, which is the square
// times the fifth root of the square.
double decodeSrgb(double value) {
    const double scaled = value / GREATEST;
    if (scaled <= 0.04045)
        return scaled / 12.92;
    const double base = (scaled + 0.055) / 1.055;
    return base * base * fifthRoot(base * base);
}

std::uint8_t encodeSrgb(double linear) {
    static const std::array<double, 255> THRESHOLDS = makeThresholds();
    // A NaN is less than none of them.
    const auto place = std::upper_bound(THRESHOLDS.begin(), THRESHOLDS.end(), linear);
    return linear > 0.0 ? static_cast<std::uint8_t>(place - THRESHOLDS.begin()) : std::uint8_t{0};
}

}  // namespace obj_adapter::tool
