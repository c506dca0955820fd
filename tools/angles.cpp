// Sine and cosine by their series. Covered by tests/tools/anglesTest.cpp.
#include "angles.h"

#include <cmath>

namespace obj_adapter::tool {

namespace {

constexpr double DEGREES_OF_A_TURN = 360.0;
constexpr double DEGREES_OF_A_QUARTER = 90.0;
constexpr double RADIANS_OF_A_DEGREE = 0.017453292519943295;

// Taylor's series for at most an eighth of a turn: the terms left out are below
// 1e-18.
SineAndCosine sumSeries(double radians) {
    constexpr int TERMS = 9;
    const double square = radians * radians;
    double sine = 0.0;
    double cosine = 0.0;
    // From the smallest term up.
    for (int term = TERMS; term > 0; --term) {
        const double n = 2.0 * term;
        cosine = 1.0 - square / ((n - 1.0) * n) * cosine;
        sine = 1.0 - square / (n * (n + 1.0)) * sine;
    }
    return {radians * sine, cosine};
}

}  // namespace

SineAndCosine sineAndCosine(double degrees) {
    // fmod is exact, and so is rounding.
    const double turned = std::fmod(degrees, DEGREES_OF_A_TURN);
    const double quarters = std::nearbyint(turned / DEGREES_OF_A_QUARTER);
    const SineAndCosine rest =
        sumSeries((turned - quarters * DEGREES_OF_A_QUARTER) * RADIANS_OF_A_DEGREE);
    switch ((static_cast<int>(quarters) % 4 + 4) % 4) {
        case 1:
            return {rest.cosine, -rest.sine};
        case 2:
            return {-rest.sine, -rest.cosine};
        case 3:
            return {-rest.cosine, rest.sine};
        default:
            return rest;
    }
}

}  // namespace obj_adapter::tool
