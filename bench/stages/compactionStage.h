// Contenders of compaction: the library's, and std::sort on whole records.
#pragma once

#include "measuring/contender.h"

namespace obj_adapter::bench {

// Each takes INPUT COUNT; the part is "sort".

// Compaction of a model that has vertices alone.
void compactVertices(const Arguments& arguments, Measured& measured);
void sortVerticesPlainly(const Arguments& arguments, Measured& measured);

// Compaction of a model whose vertices are in order already.
void compactFaces(const Arguments& arguments, Measured& measured);
void sortFacesAlone(const Arguments& arguments, Measured& measured);
void sortFacesPlainly(const Arguments& arguments, Measured& measured);

}  // namespace obj_adapter::bench
