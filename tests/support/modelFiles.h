// Real files to import, from outside the project.
#pragma once

#include <string>
#include <vector>

namespace obj_adapter::test {

// The folder named by the environment variable OBJ_ADAPTER_MODELS; empty when
// the variable is not set, and the tests that need it say that they skip.
std::string getModelFolder();

// Every .obj file below the folder, sorted, as UTF-8 paths.
std::vector<std::string> findObjFiles(const std::string& folder);

}  // namespace obj_adapter::test
