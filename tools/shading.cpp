// The light on a surface. Covered by tests/tools/pictureTest.cpp.
#include "shading.h"

#include <algorithm>

namespace obj_adapter::tool {

namespace {

// Together they leave a white surface that faces the first light just below white,
// and give the three sides of a box that are seen three clearly different shades.
struct Light {
    Vector3 direction;  // towards the light
    double strength;
};

const Light LIGHTS[] = {
    {unitVector({-0.50, 0.60, 0.75}), 0.78},
    {unitVector({0.80, 0.15, 0.45}), 0.13},
};

// From above and from below.
constexpr double LIGHT_OF_THE_SKY = 0.22;
constexpr double LIGHT_OF_THE_GROUND = 0.10;

// Highlights of more are points that no sample hits.
constexpr double MAX_EXPONENT = 1024.0;

// The power with a whole exponent, by squaring.
double wholePower(double base, int exponent) {
    double power = 1.0;
    for (; exponent > 0; exponent /= 2) {
        if (exponent % 2 == 1)
            power *= base;
        base *= base;
    }
    return power;
}

double highlight(const MaterialLook& look, const Vector3& normal, const Vector3& towardsEye,
                 const Vector3& towardsLight) {
    const double cosine = dotProduct(normal, unitVector(towardsEye + towardsLight));
    if (!(look.exponent > 0.0) || cosine <= 0.0)
        return 0.0;
    const double exponent = std::clamp(look.exponent, 1.0, MAX_EXPONENT);
    return wholePower(cosine, static_cast<int>(exponent));
}

}  // namespace

Vector3 shade(const MaterialLook& look, const Vector3& normal, const Vector3& towardsEye) {
    const double fromAbove = 0.5 + 0.5 * normal.y;
    double diffuse = LIGHT_OF_THE_GROUND + (LIGHT_OF_THE_SKY - LIGHT_OF_THE_GROUND) * fromAbove;
    double glint = 0.0;
    for (const Light& light : LIGHTS) {
        const double cosine = dotProduct(normal, light.direction);
        if (cosine <= 0.0)
            continue;
        diffuse += light.strength * cosine;
        glint += light.strength * highlight(look, normal, towardsEye, light.direction);
    }
    return look.color * diffuse + look.specular * glint;
}

}  // namespace obj_adapter::tool
