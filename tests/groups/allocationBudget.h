// Memory that runs out where a test wants it to. The program's allocations are
// replaced for this in groupTableTest.cpp.
#pragma once

#include <cstddef>

namespace obj_adapter::test {

// While it lives, that many allocations succeed and all further ones throw
// std::bad_alloc. Only one at a time, around the tested call alone.
class AllocationBudget {
public:
    explicit AllocationBudget(long allocations) noexcept;
    ~AllocationBudget();
    AllocationBudget(const AllocationBudget&) = delete;
    AllocationBudget& operator=(const AllocationBudget&) = delete;
};

// Blocks allocated and not freed yet.
long countLiveBlocks() noexcept;

// Bytes asked for since the program began, freed or not.
std::size_t countRequestedBytes() noexcept;

}  // namespace obj_adapter::test
