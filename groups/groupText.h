// Internal: groups and corners as OBJ text, for diagnostics and tests.
#pragma once

#include <obj_adapter/geometryRecords.h>
#include <obj_adapter/group.h>

#include <string>

namespace obj_adapter {

// "g wheel"; for a compound group "g car left wheel ", with a blank at the end.
std::string groupStatementText(const Group& group);

// "1/2/3 4//5 6": one-based corners, each with what it has, without a keyword.
std::string triangleCornersText(const Face& face);

}  // namespace obj_adapter
