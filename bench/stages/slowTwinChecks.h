// Are the stages right before they are timed?
#pragma once

#include "measuring/contender.h"

namespace obj_adapter::bench {

// Compares compaction, subdivision and triangulation with their slow twins on
// small generated models, by the printed model.
//
// Throws std::runtime_error when one differs.
void checkAgainstSlowTwins(const Arguments& arguments, Measured& measured);

}  // namespace obj_adapter::bench
