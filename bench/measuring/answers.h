// Hashes of models: results that must be the same in every run.
#pragma once

#include "support/modelView.h"

#include <cstdint>

namespace obj_adapter::bench {

// Of the text that printModel makes of it, without holding it whole; in steps of
// some records. For small models: it takes a second for some ten thousand.
std::uint64_t hashPrintedModel(const test::ModelView& model);

// Of the geometry: every bit of vertices, texture points, normals and of the
// faces' corners. NaN counts as one value. Fast.
std::uint64_t hashGeometry(const test::ModelView& model);

// What the model's tables hold in bytes: all records, the groups' names and lists
// of faces.
std::uint64_t tableBytes(const test::ModelView& model);

}  // namespace obj_adapter::bench
