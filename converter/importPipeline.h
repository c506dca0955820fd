// Internal: the stages of one import, in their order.
#pragma once

namespace obj_adapter {

struct ConverterState;

// Reads, reverses, compacts and subdivides as set. Returns the result code.
// Stages that fail are reported; whatever is thrown stays inside.
int runImport(ConverterState& state, const char* fileName) noexcept;

}  // namespace obj_adapter
