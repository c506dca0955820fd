// A model as text with every bit of it, for comparing builds and runs.
#pragma once

#include "support/modelView.h"

#include <string>

namespace obj_adapter::test {

// One record on each line. Doubles and floats stand as the hexadecimal of their
// bits; a NaN, whatever its bits, as "nan".
std::string printModel(const ModelView& model);

}  // namespace obj_adapter::test
