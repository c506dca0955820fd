// Internal: the model's library names as OBJ text. Hosts render materials with
// obj_adapter/materialText.h.
#pragma once

#include <string>

namespace obj_adapter {

class MaterialTable;

// "mtllib name\n" for each library, in the order of their first loading.
std::string libraryNamesToText(const MaterialTable& table);

}  // namespace obj_adapter
