// Compact prints of records, for tables of text in and text out. Numbers are
// printed as %g prints them: short, for reading; printedModel.h has every bit.
#pragma once

#include "support/modelView.h"

#include <string>

namespace obj_adapter::test {

std::string describeNumber(double value);

// "(1 2 3 w1) (0 0 0 w0.5)"
std::string describeVertices(const ModelView& model);

// "(0.5 1 w0)"
std::string describeTexturePoints(const ModelView& model);

// "(0 0 1)"
std::string describeNormalPoints(const ModelView& model);

// "0/1/2" with "-" for none and nothing behind the last that is there:
// "0", "0/1", "0/-/2".
std::string describeCorner(const FaceElement& corner);

// "[0 1 2]", with "m1" before the bracket closes when it has a material:
// "[0 1 2 m1]".
std::string describeFaces(const ModelView& model);

// "cube: 0 1; a/b: 2; empty:" where "/" joins components of compound groups.
std::string describeGroups(const ModelView& model);

}  // namespace obj_adapter::test
