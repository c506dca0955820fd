// What must hold for every model, whatever was imported.
#pragma once

#include "support/modelView.h"

#include <string>

namespace obj_adapter::test {

// How far the import came, and so what holds.
enum class ModelState {
    ENDED_EARLY,  // an import that gave up: indices of faces may be out of range
    READ,         // read to its end
    COMPACTED,    // read and compacted, and not subdivided
    SUBDIVIDED,   // compacted and subdivided: vertices are no longer sorted
};

// Empty when everything holds; otherwise the first violations, one on each line.
std::string findViolations(const ModelView& model, ModelState state);

}  // namespace obj_adapter::test
