// What is in an imported model, for a person.
#pragma once

#include "importRun.h"

#include <iosfwd>

namespace obj_adapter::tool {

class ModelAccess;

// Whether any table has a record: after an import that gave up, whether there is
// anything to tell.
bool hasRecords(const ModelAccess& model);

// Prints counts, bounding box, groups, materials and times; with all, lists and
// names in full.
void printSummary(std::ostream& out, const ModelAccess& model, const ImportRun& importRun,
                  bool all);

}  // namespace obj_adapter::tool
