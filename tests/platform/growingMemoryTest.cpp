// Memory that grows, where the system does not give what is asked for.
// growingArrayTest.cpp has what goes well, by way of the arrays.
#include "platform/growingMemory.h"

#include "support/countedMemory.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <utility>

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
