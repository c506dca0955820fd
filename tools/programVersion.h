// The program's name with its version: "obj_adapter 0.1.0".
#pragma once

#include <obj_adapter/version.h>

#include <string>

namespace obj_adapter::tool {

inline std::string getProgramVersion() {
    return "obj_adapter " + std::to_string(OBJ_ADAPTER_VERSION_MAJOR) + "." +
           std::to_string(OBJ_ADAPTER_VERSION_MINOR) + "." +
           std::to_string(OBJ_ADAPTER_VERSION_PATCH);
}

}  // namespace obj_adapter::tool
