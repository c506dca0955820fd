// Compaction step by step with ordered maps and erasing: the slow, obvious twin
// of processing/compaction.cpp. For tests; never for the library.
#pragma once

namespace obj_adapter {
struct ObjModel;
}

namespace obj_adapter::test {

// The library must leave the same model, to the last bit.
void compactDataSlowly(ObjModel& model);

}  // namespace obj_adapter::test
