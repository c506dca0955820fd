// The reading of an OBJ text line by line and token by token with the C library:
// the slow, obvious twin of obj/. For tests; never for the library.
#pragma once

#include <obj_adapter/material.h>

#include <map>
#include <string>
#include <vector>

namespace obj_adapter {
struct ObjModel;
}

namespace obj_adapter::test {

// The libraries that there are, by the names that mtllib statements give them, and
// the materials read so far.
struct SlowMaterials {
    std::map<std::string, std::string> libraries;
    std::vector<Material> materials;
};

// Appends what the text says to the model and returns the messages, each
// "level|text" with a line feed. Polygons without an ear are skipped. The library
// must do the same, to the last bit.
//
// fileName  names the model
std::string readObjSlowly(const std::string& text, const std::string& fileName, ObjModel& model,
                          SlowMaterials& materials);

// The same where there are no libraries.
std::string readObjSlowly(const std::string& text, const std::string& fileName, ObjModel& model);

}  // namespace obj_adapter::test
