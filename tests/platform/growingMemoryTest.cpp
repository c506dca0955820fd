// Memory that grows, where the system does not give what is asked for.
// growingArrayTest.cpp has what goes well, by way of the arrays.
#include "platform/growingMemory.h"

#include "support/countedMemory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace obj_adapter::test {

namespace {

using platform::GrowingMemory;
using platform::SMALLEST_OWN_PAGES;

// More than processors of today have addresses for.
constexpr std::size_t BEYOND_ADDRESSES = std::size_t{1} << 58U;

const std::string TEXT = "kept";

void write(GrowingMemory& memory) {
    std::memcpy(memory.data(), TEXT.data(), TEXT.size());
}

std::string read(const GrowingMemory& memory) {
    return {static_cast<const char*>(memory.data()), TEXT.size()};
}

TEST(GrowingMemoryTest, takesWhatIsNeededWhereTheLikelyIsNotToBeHad) {
    const PagesAllowed pages;
    GrowingMemory memory;
    for (std::size_t wanted = SMALLEST_OWN_PAGES; wanted <= 64 * SMALLEST_OWN_PAGES; wanted *= 8) {
        if (memory.capacity() >= wanted)
            continue;
        memory.grow(memory.capacity() > 0 ? TEXT.size() : 0, wanted, BEYOND_ADDRESSES);
        EXPECT_GE(memory.capacity(), wanted);
        EXPECT_LT(memory.capacity(), BEYOND_ADDRESSES);
        write(memory);
    }
    EXPECT_EQ(read(memory), TEXT);
}

TEST(GrowingMemoryTest, isAsItWasWhereWhatIsNeededIsNotToBeHad) {
    const PagesAllowed pages;
    // The heap would be asked next, and a sanitizer's ends the process.
    const LargestBlock heapEnds(SMALLEST_OWN_PAGES);
    for (const std::size_t bytes : {SMALLEST_OWN_PAGES / 2, 4 * SMALLEST_OWN_PAGES}) {
        GrowingMemory memory;
        EXPECT_THROW(memory.grow(0, BEYOND_ADDRESSES, BEYOND_ADDRESSES), std::bad_alloc);
        EXPECT_EQ(memory.data(), nullptr);
        EXPECT_EQ(memory.capacity(), 0U);

        memory.grow(0, bytes, bytes);
        write(memory);
        const void* place = memory.data();
        const std::size_t capacity = memory.capacity();
        EXPECT_THROW(memory.grow(TEXT.size(), BEYOND_ADDRESSES, BEYOND_ADDRESSES), std::bad_alloc);
        EXPECT_EQ(memory.data(), place);
        EXPECT_EQ(memory.capacity(), capacity);
        EXPECT_EQ(read(memory), TEXT);
    }
}

// Below and above the size from which on a block has pages, which are refused.
TEST(GrowingMemoryTest, takesWhatIsNeededFromAHeapWithoutRoomForTheLikely) {
    for (const std::size_t wanted : {SMALLEST_OWN_PAGES / 2, 4 * SMALLEST_OWN_PAGES}) {
        GrowingMemory memory;
        memory.grow(0, wanted / 2, wanted / 2);
        write(memory);
        {
            const LargestBlock heapEnds(wanted);
            memory.grow(TEXT.size(), wanted, wanted + 1);
        }
        EXPECT_EQ(memory.capacity(), wanted);
        EXPECT_EQ(read(memory), TEXT);

        const LargestBlock heapEnds(wanted);
        EXPECT_THROW(memory.grow(TEXT.size(), wanted + 1, 2 * wanted), std::bad_alloc);
        EXPECT_EQ(memory.capacity(), wanted);
        EXPECT_EQ(read(memory), TEXT);
    }
}

#if defined(__linux__)

// Wherever the system's addresses begin, huge pages fit in from the first byte on.
TEST(GrowingMemoryTest, beginsWhereAHugePageCan) {
    constexpr std::size_t HUGE_PAGE = std::size_t{2} * 1024 * 1024;
    const PagesAllowed pages;
    std::vector<GrowingMemory> blocks(8);
    for (std::size_t block = 0; block < blocks.size(); ++block) {
        GrowingMemory& memory = blocks[block];
        memory.grow(0, SMALLEST_OWN_PAGES + block, SMALLEST_OWN_PAGES + block);
        write(memory);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory.data()) % HUGE_PAGE, 0U);
        EXPECT_GE(memory.capacity(), SMALLEST_OWN_PAGES + block);
        // All that may be used can be.
        static_cast<char*>(memory.data())[SMALLEST_OWN_PAGES] = 1;
        static_cast<char*>(memory.data())[memory.capacity() - 1] = 1;
    }
}

int refusalsAsked = 0;

bool refuseTheSecond() noexcept {
    return ++refusalsAsked == 2;
}

// Addresses for the larger block are there, but the pages are not moved to them: the
// heap serves, and the addresses are given back.
TEST(GrowingMemoryTest, goesToTheHeapWhenPagesAreNotMoved) {
    const std::size_t blocksBefore = getNumberOfBlocksInUse();
    {
        const PagesAllowed pages;
        GrowingMemory memory;
        memory.grow(0, SMALLEST_OWN_PAGES, SMALLEST_OWN_PAGES);
        write(memory);
        EXPECT_EQ(getNumberOfBlocksInUse(), blocksBefore);

        refusalsAsked = 0;
        platform::refusesPages = refuseTheSecond;
        const std::size_t wanted = memory.capacity() + 1;
        memory.grow(TEXT.size(), wanted, 2 * wanted);
        EXPECT_EQ(refusalsAsked, 2);
        EXPECT_EQ(memory.capacity(), 2 * wanted);
        EXPECT_EQ(read(memory), TEXT);
        EXPECT_EQ(getNumberOfBlocksInUse(), blocksBefore + 1);

        // And where the heap has no room either, the pages are as they were.
        GrowingMemory other;
        refusalsAsked = 2;
        other.grow(0, SMALLEST_OWN_PAGES, SMALLEST_OWN_PAGES);
        write(other);
        const void* place = other.data();
        const std::size_t capacity = other.capacity();
        const LargestBlock heapEnds(SMALLEST_OWN_PAGES);
        refusalsAsked = 0;
        EXPECT_THROW(other.grow(TEXT.size(), wanted, 2 * wanted), std::bad_alloc);
        EXPECT_EQ(other.data(), place);
        EXPECT_EQ(other.capacity(), capacity);
        EXPECT_EQ(read(other), TEXT);
    }
    EXPECT_EQ(getNumberOfBlocksInUse(), blocksBefore);
}

#endif

TEST(GrowingMemoryTest, isMovedIntoAnotherWhichGivesItsOwnBack) {
    const std::size_t blocksBefore = getNumberOfBlocksInUse();
    {
        GrowingMemory memory;
        memory.grow(0, TEXT.size(), TEXT.size());
        write(memory);
        GrowingMemory other;
        other.grow(0, 1, 1);
        other = std::move(memory);
        EXPECT_EQ(getNumberOfBlocksInUse(), blocksBefore + 1);
        EXPECT_EQ(read(other), TEXT);
        GrowingMemory& same = other;
        other = std::move(same);
        EXPECT_EQ(read(other), TEXT);
    }
    EXPECT_EQ(getNumberOfBlocksInUse(), blocksBefore);
}

}  // namespace

}  // namespace obj_adapter::test
