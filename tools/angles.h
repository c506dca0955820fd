// Sine and cosine of angles in degrees by basic arithmetic alone, so that they
// have the same bits everywhere.
#pragma once

namespace obj_adapter::tool {

struct SineAndCosine {
    double sine;
    double cosine;
};

// Any finite angle; full turns are taken off. The error is below 1e-15, and the
// right angles are exact.
SineAndCosine sineAndCosine(double degrees);

}  // namespace obj_adapter::tool
