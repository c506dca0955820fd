// The reading of a material library line by line and token by token with the C
// library: the slow, obvious twin of material/. For tests; never for the library.
#pragma once

#include <obj_adapter/material.h>

#include <string>
#include <vector>

namespace obj_adapter::test {

// Reads the text as a library into the list, whose last material is the current one,
// and returns the messages, each "level|text" with a line feed, without the one that
// says where the library is. The library must do the same, to the last bit.
std::string readMtlSlowly(const std::string& text, std::vector<Material>& materials);

// The first material of that name, or -1.
int findMaterialSlowly(const std::string& name, const std::vector<Material>& materials);

}  // namespace obj_adapter::test
