// Internal: the stages of one import, in their order.
#pragma once

#include "obj/objReader.h"

#include <string_view>

namespace obj_adapter {

struct ConverterState;

// Reads, reverses, compacts and subdivides as set. Returns the result code.
// Stages that fail are reported; whatever is thrown stays inside.
int runImport(ConverterState& state, const char* fileName) noexcept;

// An OBJ text in memory. All of it outlives the import.
struct MemoryInput {
    const char* name = nullptr;
    std::string_view text;
    HostLibraries libraries;
};

// The same, without any file.
int runImport(ConverterState& state, const MemoryInput& input) noexcept;

}  // namespace obj_adapter
