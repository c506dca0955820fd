#include "support/countedMemory.h"

#include "platform/growingMemory.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>
#include <utility>

namespace {

// Allocations that still succeed before one fails; negative when none will.
int allocationsLeft = -1;

// The failures do not end with the first.
bool failsFromThereOn = false;
bool isBudgetExceeded = false;

std::size_t largestBlock = std::numeric_limits<std::size_t>::max();

std::size_t numberOfAllocations = 0;
std::size_t bytesRequested = 0;
std::size_t numberOfBlocksInUse = 0;
std::size_t bytesInUse = 0;
std::size_t mostBytesInUse = 0;

// In front of each block stands its size.
constexpr std::size_t SIZE_ROOM = alignof(std::max_align_t);

bool mayAllocate() {
    if (allocationsLeft < 0)
        return true;
    if (allocationsLeft > 0) {
        --allocationsLeft;
        return true;
    }
    if (failsFromThereOn)
        isBudgetExceeded = true;
    else
        allocationsLeft = -1;
    return false;
}

bool refuseAllPages() noexcept {
    return true;
}

bool refusePagesLikeAllocations() noexcept {
    ++numberOfAllocations;
    return !mayAllocate();
}

// Before the first test.
[[maybe_unused]] const bool pagesAreRefused = [] {
    obj_adapter::platform::refusesPages = refuseAllPages;
    return true;
}();

}  // namespace

// The other forms come back to these.
void* operator new(std::size_t size) {
    ++numberOfAllocations;
    bytesRequested += size;
    const bool isAllowed = size <= largestBlock && mayAllocate();
    void* block = isAllowed ? std::malloc(SIZE_ROOM + size) : nullptr;
    if (block == nullptr)
        throw std::bad_alloc();
    *static_cast<std::size_t*>(block) = size;
    ++numberOfBlocksInUse;
    bytesInUse += size;
    mostBytesInUse = std::max(mostBytesInUse, bytesInUse);
    return static_cast<char*>(block) + SIZE_ROOM;
}

// Not by itself under a sanitizer, which brings its own; temporary buffers of the
// standard library use it.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* memory) noexcept {
    if (memory == nullptr)
        return;
    void* block = static_cast<char*>(memory) - SIZE_ROOM;
    --numberOfBlocksInUse;
    bytesInUse -= *static_cast<std::size_t*>(block);
    std::free(block);
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

// The arrays' forms, which a sanitizer brings as well.
void* operator new[](std::size_t size) {
    return operator new(size);
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    return operator new(size, tag);
}

void operator delete[](void* memory) noexcept {
    operator delete(memory);
}

void operator delete[](void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace obj_adapter::test {

void failAllocationAfter(int allocations) {
    failsFromThereOn = false;
    allocationsLeft = allocations;
}

bool stopFailingAllocations() {
    const bool hasFailed = allocationsLeft < 0;
    allocationsLeft = -1;
    return hasFailed;
}

AllocationBudget::AllocationBudget(int allocations) noexcept {
    failsFromThereOn = true;
    isBudgetExceeded = false;
    allocationsLeft = allocations;
}

AllocationBudget::~AllocationBudget() {
    allocationsLeft = -1;
}

bool AllocationBudget::isExceeded() const noexcept {
    return isBudgetExceeded;
}

LargestBlock::LargestBlock(std::size_t bytes) noexcept {
    largestBlock = bytes;
}

LargestBlock::~LargestBlock() {
    largestBlock = std::numeric_limits<std::size_t>::max();
}

PagesAllowed::PagesAllowed() noexcept {
    platform::refusesPages = refusePagesLikeAllocations;
}

PagesAllowed::~PagesAllowed() {
    platform::refusesPages = refuseAllPages;
}

MemoryInterlude::MemoryInterlude() noexcept : interrupted(std::exchange(allocationsLeft, -1)) {}

MemoryInterlude::~MemoryInterlude() {
    allocationsLeft = interrupted;
}

std::size_t getNumberOfAllocations() {
    return numberOfAllocations;
}

std::size_t getBytesRequested() {
    return bytesRequested;
}

std::size_t getNumberOfBlocksInUse() {
    return numberOfBlocksInUse;
}

std::size_t getBytesInUse() {
    return bytesInUse;
}

void watchBytesInUse() {
    mostBytesInUse = bytesInUse;
}

std::size_t getMostBytesInUse() {
    return mostBytesInUse;
}

}  // namespace obj_adapter::test
