// Internal: one block of memory that grows without being copied, where the system
// can do that.
//
// A small block comes from operator new and is copied when it grows. A large one
// has pages of its own: Linux moves the pages themselves to a larger range of
// addresses, Windows commits more of a range that was reserved with plenty of
// room. So a growing block does not stand in memory twice, and what it has not
// touched yet costs addresses only. Linux is also asked for huge pages, which
// makes the first touch of a large block two to three times cheaper. Where there
// are no such pages, operator new serves blocks of every size.
#pragma once

#include <cstddef>

namespace obj_adapter::platform {

// From this size on a block has its own pages.
constexpr std::size_t SMALLEST_OWN_PAGES = std::size_t{512} * 1024;

// Asked before pages are requested, and on Linux once more before they are moved, if
// set: true refuses, and operator new has to serve. For tests that count memory or let
// it run out; the library never sets it.
using PageRefusal = bool (*)() noexcept;
extern PageRefusal refusesPages;

// Uninitialized bytes, aligned for every record. The content is carried along as
// bytes.
class GrowingMemory {
public:
    GrowingMemory() noexcept = default;
    ~GrowingMemory() { release(); }
    GrowingMemory(GrowingMemory&& other) noexcept { swap(other); }
    GrowingMemory& operator=(GrowingMemory&& other) noexcept;
    GrowingMemory(const GrowingMemory&) = delete;
    GrowingMemory& operator=(const GrowingMemory&) = delete;

    void* data() const noexcept { return block.begin; }
    std::size_t capacity() const noexcept { return block.capacity; }

    // Makes the capacity at least wantedBytes, which is more than it is now, and
    // keeps the first usedBytes. The address may change.
    //
    // likelyBytes  at least wantedBytes: what may come to be needed, taken as the
    //              size to ask for where untouched memory costs little; operator new
    //              is asked for twice wantedBytes at most
    //
    // Throws std::bad_alloc; the block is then as it was.
    void grow(std::size_t usedBytes, std::size_t wantedBytes, std::size_t likelyBytes);

    // Makes the capacity at least wantedBytes where the block stands; false where that
    // is not possible.
    bool extend(std::size_t wantedBytes) noexcept;

    // Gives back what lies behind the first usedBytes, as far as possible; whole
    // pages stay.
    void shrink(std::size_t usedBytes) noexcept;

    void swap(GrowingMemory& other) noexcept;

private:
    enum class Origin : unsigned char { HEAP, PAGES };

    struct Block {
        void* begin = nullptr;
        std::size_t capacity = 0;      // bytes that may be used
        std::size_t addressBytes = 0;  // of own pages: the length of the range
        Origin origin = Origin::HEAP;
    };

    bool growOnPages(std::size_t usedBytes, std::size_t wantedBytes,
                     std::size_t likelyBytes) noexcept;
    void growOnHeap(std::size_t usedBytes, std::size_t wantedBytes, std::size_t likelyBytes);
    void release() noexcept;

    Block block;
};

}  // namespace obj_adapter::platform
