// One round of Loop subdivision by direct search: the slow, obvious twin of
// processing/subdivision.cpp. For tests; never for the library.
#pragma once

namespace obj_adapter {
struct ObjModel;
}

namespace obj_adapter::test {

// Neighbours are looked up in ordered maps, and every step is done in the order
// in which the scheme names it. The library must give the same bits.
void subdivideOnceSlowly(ObjModel& model);

}  // namespace obj_adapter::test
