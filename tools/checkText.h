// A report on a file, for a person and for other programs.
#pragma once

#include "checkReport.h"
#include "jsonOutput.h"

#include <iosfwd>

namespace obj_adapter::tool {

// With all, every issue in full; otherwise the first ones of each category.
void printReport(std::ostream& out, const CheckReport& report, bool all);

// All reports of a run of the program.
Json reportsToJson(const std::vector<CheckReport>& reports);

}  // namespace obj_adapter::tool
