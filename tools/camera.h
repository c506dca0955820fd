// Looks at the whole of a model.
#pragma once

#include "modelAccess.h"
#include "pictureOptions.h"

namespace obj_adapter::tool {

// A point as the camera sees it: in pixels from the upper left corner of the
// picture, and the inverse of its distance.
struct SeenPoint {
    double x;
    double y;
    double nearness;
};

class Camera {
public:
    // Stands as near as it can with all drawable faces inside the picture, a
    // margin kept. Pixels are those of width times height.
    Camera(const ModelAccess& model, const PictureOptions& options, int width, int height);

    // Whether there is anything to look at.
    bool seesAnything() const { return anything; }

    // Into the camera's own coordinates: x to the right, y up, z towards the
    // camera; the model's greatest extent is about 2.
    Vector3 turnPosition(const Vector3& position) const;

    // The same for a direction.
    Vector3 turnDirection(const Vector3& direction) const;

    // Of a position that was turned.
    SeenPoint project(const Vector3& turned) const;

    // From a position that was turned to the eye, of length 1.
    Vector3 towardsEye(const Vector3& turned) const;

private:
    void lookFrom(const PictureOptions& options);
    void findExtent(const ModelAccess& model);
    void standBack(const ModelAccess& model, int width, int height);
    void centerPicture(const ModelAccess& model, int width, int height);

    bool anything = false;
    Vector3 center;
    double scale = 1.0;
    Vector3 right;
    Vector3 up;
    Vector3 back;  // from the model to the camera
    Vector3 eye;   // in the camera's coordinates
    double focalLength = 1.0;
    double middleX = 0.0;  // where the eye's own axis meets the picture
    double middleY = 0.0;
};

}  // namespace obj_adapter::tool
