// The camera of pictures. Covered by tests/tools/cameraTest.cpp.
#include "camera.h"

#include "angles.h"
#include "boundingBox.h"

#include <algorithm>

namespace obj_adapter::tool {

namespace {

// Half the field of view across the picture's shorter side, as its tangent: some
// 28 degrees in all, a portrait lens.
constexpr double HALF_FIELD = 0.25;

// The share of the field that the model may fill.
constexpr double FILLED = 0.92;

// The nearest point keeps at least this distance, of a model of about 2.
constexpr double LEAST_DISTANCE = 0.05;

// Calls the function with each corner's position of each drawable face.
template <typename Function>
void forEachCorner(const ModelAccess& model, Function function) {
    for (int index = 0; index < model.getNumberOfFaces(); ++index) {
        const Face& face = model.getFace(index);
        if (!model.isDrawable(face))
            continue;
        for (const FaceElement& corner : face.elements)
            function(model.getPosition(corner.vertexIndex));
    }
}

}  // namespace

Camera::Camera(const ModelAccess& model, const PictureOptions& options, int width, int height) {
    lookFrom(options);
    findExtent(model);
    standBack(model, width, height);
}

// Halves are taken before differences, which could overflow.
Vector3 Camera::turnPosition(const Vector3& position) const {
    return turnDirection((position * 0.5 - center) * scale);
}

Vector3 Camera::turnDirection(const Vector3& direction) const {
    return {dotProduct(direction, right), dotProduct(direction, up), dotProduct(direction, back)};
}

SeenPoint Camera::project(const Vector3& turned) const {
    const double nearness = 1.0 / (eye.z - turned.z);
    return {middleX + (turned.x - eye.x) * nearness * focalLength,
            middleY - (turned.y - eye.y) * nearness * focalLength, nearness};
}

Vector3 Camera::towardsEye(const Vector3& turned) const {
    return unitVector(eye - turned);
}

void Camera::lookFrom(const PictureOptions& options) {
    const auto [sineAround, cosineAround] = sineAndCosine(options.azimuth);
    const auto [sineAbove, cosineAbove] = sineAndCosine(options.elevation);
    // With y up the front is towards +z; with z up it is towards -y.
    back = {cosineAbove * sineAround, sineAbove, cosineAbove * cosineAround};
    right = {cosineAround, 0.0, -sineAround};
    up = {-sineAbove * sineAround, cosineAbove, -sineAbove * cosineAround};
    if (options.up == UpAxis::Z) {
        for (Vector3* axis : {&back, &right, &up})
            *axis = {axis->x, -axis->z, axis->y};
    }
}

// The center is kept halved, as turnPosition() wants it.
void Camera::findExtent(const ModelAccess& model) {
    Extent extents[AXIS_COUNT];
    forEachCorner(model, [&extents](const Vector3& position) {
        extents[0].include(position.x);
        extents[1].include(position.y);
        extents[2].include(position.z);
    });
    anything = !extents[0].isEmpty();
    if (!anything)
        return;
    const Vector3 low = Vector3{extents[0].low, extents[1].low, extents[2].low} * 0.5;
    const Vector3 high = Vector3{extents[0].high, extents[1].high, extents[2].high} * 0.5;
    center = low * 0.5 + high * 0.5;
    const double size = largestCoordinate(high - low);
    // What is smaller than this cannot be scaled to 2.
    constexpr double SMALLEST_SIZE = 1e-300;
    scale = size > SMALLEST_SIZE ? 2.0 / size : 1.0;
}

// A point is seen at x / (eye.z - z) from the middle, which has to be within the
// field on either side. Each side of the picture is thus a plane, and for every
// direction there is one position that touches both of its planes.
void Camera::standBack(const ModelAccess& model, int width, int height) {
    const double shorter = std::min(width, height);
    const double fieldX = HALF_FIELD * FILLED * width / shorter;
    const double fieldY = HALF_FIELD * FILLED * height / shorter;
    middleX = 0.5 * width;
    middleY = 0.5 * height;
    focalLength = 0.5 * shorter / HALF_FIELD;

    Extent rightPlane;
    Extent leftPlane;
    Extent upperPlane;
    Extent lowerPlane;
    double nearest = 0.0;
    forEachCorner(model, [&](const Vector3& position) {
        const Vector3 turned = turnPosition(position);
        rightPlane.include(turned.x + fieldX * turned.z);
        leftPlane.include(-turned.x + fieldX * turned.z);
        upperPlane.include(turned.y + fieldY * turned.z);
        lowerPlane.include(-turned.y + fieldY * turned.z);
        nearest = std::max(nearest, turned.z);
    });
    if (!anything)
        return;
    eye.x = 0.5 * (rightPlane.high - leftPlane.high);
    eye.y = 0.5 * (upperPlane.high - lowerPlane.high);
    eye.z =
        std::max({0.5 * (rightPlane.high + leftPlane.high) / fieldX,
                  0.5 * (upperPlane.high + lowerPlane.high) / fieldY, nearest + LEAST_DISTANCE});
    centerPicture(model, width, height);
}

// In the direction that has room to spare, touching the planes alike is not yet
// being in the middle of the picture.
void Camera::centerPicture(const ModelAccess& model, int width, int height) {
    Extent columns;
    Extent rows;
    forEachCorner(model, [&](const Vector3& position) {
        const SeenPoint point = project(turnPosition(position));
        columns.include(point.x);
        rows.include(point.y);
    });
    middleX += 0.5 * (width - columns.low - columns.high);
    middleY += 0.5 * (height - rows.low - rows.high);
}

}  // namespace obj_adapter::tool
