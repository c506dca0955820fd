// What is in an imported model, for a person.
#pragma once

#include "importRun.h"

#include <iosfwd>

namespace obj_adapter {
class ObjConverter;
}

namespace obj_adapter::tool {

struct SummaryOptions {
    bool all = false;        // whole lists and names
    bool hierarchy = false;  // how the tree was asked for
};

// Whether any table has a record: after an import that gave up, whether there is
// anything to tell.
bool hasRecords(ObjConverter& converter);

// Prints counts, bounding box, groups, their tree, materials and times. Renames
// groups of one name in the model, as every request for the tree does.
void printSummary(std::ostream& out, ObjConverter& converter, const ImportRun& importRun,
                  const SummaryOptions& options);

}  // namespace obj_adapter::tool
