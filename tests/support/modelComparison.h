// Whole models compared, with the settings of the records' every bit.
#pragma once

#include <string>

namespace obj_adapter {
struct ObjModel;
}

namespace obj_adapter::test {

// The groups, tables and flags that processing works on.
void copyTables(const ObjModel& from, ObjModel& to);

// Everything of a model that a stage may change, as text.
std::string printState(ObjModel& model);

// Empty when equal; the first line that differs, which a whole mesh would hide.
std::string firstDifference(const std::string& expected, const std::string& actual);

// The same answer as comparing what printState gives, at once for large meshes.
bool sameState(const ObjModel& a, const ObjModel& b);

}  // namespace obj_adapter::test
