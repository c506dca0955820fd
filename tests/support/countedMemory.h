// Memory that a test can watch, and let run out. Only for programs that list
// countedMemory.cpp among their sources, which replaces operator new there and
// keeps the library from taking pages of its own: then large tables come from
// operator new like all else.
#pragma once

#include <cstddef>

namespace obj_adapter::test {

// Lets one allocation fail with std::bad_alloc: the next, after so many that
// succeed. A negative number lets none fail.
void failAllocationAfter(int allocations);

// Ends that. True if the allocation has failed.
bool stopFailingAllocations();

// While it lives, that many allocations succeed and all further ones throw
// std::bad_alloc. Only one at a time, around the tested call alone.
class AllocationBudget {
public:
    explicit AllocationBudget(int allocations) noexcept;
    ~AllocationBudget();
    AllocationBudget(const AllocationBudget&) = delete;
    AllocationBudget& operator=(const AllocationBudget&) = delete;

    // Whether an allocation has failed since the construction.
    bool isExceeded() const noexcept;
};

// While it lives, no block may be larger: std::bad_alloc, as where memory runs out.
class LargestBlock {
public:
    explicit LargestBlock(std::size_t bytes) noexcept;
    ~LargestBlock();
    LargestBlock(const LargestBlock&) = delete;
    LargestBlock& operator=(const LargestBlock&) = delete;
};

// While it lives all allocations succeed and none counts: for a test's own code
// in the middle of the tested call, in a callback.
class MemoryInterlude {
public:
    MemoryInterlude() noexcept;
    ~MemoryInterlude();
    MemoryInterlude(const MemoryInterlude&) = delete;
    MemoryInterlude& operator=(const MemoryInterlude&) = delete;

private:
    int interrupted;
};

// While it lives, the library may take pages of its own. A request counts as an
// allocation and fails like one; bytes are not counted.
class PagesAllowed {
public:
    PagesAllowed() noexcept;
    ~PagesAllowed();
    PagesAllowed(const PagesAllowed&) = delete;
    PagesAllowed& operator=(const PagesAllowed&) = delete;
};

// Since the program began: allocations, and the bytes that they asked for.
std::size_t getNumberOfAllocations();
std::size_t getBytesRequested();

// Blocks not given back.
std::size_t getNumberOfBlocksInUse();

// The bytes asked for and not given back: now, and the most since the last call
// of watchBytesInUse.
std::size_t getBytesInUse();
void watchBytesInUse();
std::size_t getMostBytesInUse();

}  // namespace obj_adapter::test
