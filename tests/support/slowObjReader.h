// The reading of an OBJ text line by line and token by token with the C library:
// the slow, obvious twin of obj/. For tests; never for the library.
#pragma once

#include <string>

namespace obj_adapter {
struct ObjModel;
}

namespace obj_adapter::test {

// Appends what the text says to the model and returns the messages, each
// "level|text" with a line feed. There are no material libraries, and polygons
// without an ear are skipped. The library must do the same, to the last bit.
//
// fileName  names the model
std::string readObjSlowly(const std::string& text, const std::string& fileName, ObjModel& model);

}  // namespace obj_adapter::test
