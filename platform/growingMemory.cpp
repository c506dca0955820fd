// Memory that grows without being copied. Covered by
// tests/platform/growingArrayTest.cpp.
#include "platform/growingMemory.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#if defined(__linux__)
#include <sys/mman.h>
#elif defined(_WIN32)
#include <windows.h>
#endif

namespace obj_adapter::platform {

PageRefusal refusesPages = nullptr;

namespace {

// A range of addresses with pages behind its first usableBytes.
struct PageRange {
    void* begin = nullptr;
    std::size_t usableBytes = 0;
    std::size_t addressBytes = 0;
};

// The size of a huge page; every range begins and ends at a multiple of it.
constexpr std::size_t PAGE_STEP = std::size_t{2} * 1024 * 1024;

// No file comes near; keeps the roundings below from wrapping.
constexpr std::size_t MOST_PAGE_BYTES = std::numeric_limits<std::size_t>::max() / 4;

std::size_t roundedUp(std::size_t bytes, std::size_t step) noexcept {
    return (bytes + step - 1) / step * step;
}

bool arePagesRefused() noexcept {
    return refusesPages != nullptr && refusesPages();
}

#if defined(__linux__)

// Small tables move seldom: this much is only addresses.
constexpr std::size_t SMALLEST_RANGE = std::size_t{16} * 1024 * 1024;

void releaseRange(const PageRange& range) noexcept {
    ::munmap(range.begin, range.addressBytes);
}

// No system has smaller pages.
constexpr std::size_t SMALLEST_PAGE = 4096;

// Addresses that begin at a multiple of PAGE_STEP, so that every page can be a
// huge one. The margin is what it takes wherever the system's begin.
PageRange reserveAligned(std::size_t addressBytes) noexcept {
    constexpr std::size_t MARGIN = PAGE_STEP - SMALLEST_PAGE;
    void* reserved = ::mmap(nullptr, addressBytes + MARGIN, PROT_READ | PROT_WRITE,
                            MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (reserved == MAP_FAILED)
        return {};
    const std::size_t address = reinterpret_cast<std::uintptr_t>(reserved);
    const std::size_t head = roundedUp(address, PAGE_STEP) - address;
    char* begin = static_cast<char*>(reserved) + head;
    if (head > 0)
        ::munmap(reserved, head);
    if (head < MARGIN)
        ::munmap(begin + addressBytes, MARGIN - head);
    return {begin, addressBytes, addressBytes};
}

// Advice: a system without huge pages goes on with what it has.
PageRange makeRange(std::size_t wantedBytes, std::size_t likelyBytes) noexcept {
    const std::size_t enough = roundedUp(wantedBytes, PAGE_STEP);
    const std::size_t likely = roundedUp(std::max(likelyBytes, SMALLEST_RANGE), PAGE_STEP);
    PageRange range = reserveAligned(likely);
    if (range.begin == nullptr && enough < likely)
        range = reserveAligned(enough);
    if (range.begin != nullptr)
        ::madvise(range.begin, range.addressBytes, MADV_HUGEPAGE);
    return range;
}

// Moves the pages, not the bytes.
PageRange growRange(const PageRange& old, std::size_t, std::size_t wantedBytes,
                    std::size_t likelyBytes) noexcept {
    const PageRange grown = makeRange(wantedBytes, likelyBytes);
    if (grown.begin == nullptr)
        return {};
    if (arePagesRefused() || ::mremap(old.begin, old.addressBytes, grown.addressBytes,
                                      MREMAP_MAYMOVE | MREMAP_FIXED, grown.begin) == MAP_FAILED) {
        releaseRange(grown);
        return {};
    }
    return grown;
}

// All of a range can be used from the beginning.
PageRange extendRange(const PageRange&, std::size_t) noexcept {
    return {};
}

void shrinkRange(PageRange& range, std::size_t usedBytes) noexcept {
    const std::size_t kept = roundedUp(usedBytes, PAGE_STEP);
    if (kept >= range.addressBytes)
        return;
    ::munmap(static_cast<char*>(range.begin) + kept, range.addressBytes - kept);
    range.addressBytes = kept;
    range.usableBytes = kept;
}

#elif defined(_WIN32)

// Addresses alone; few tables ever outgrow it.
constexpr std::size_t SMALLEST_RANGE = std::size_t{8} * 1024 * 1024 * 1024;

void releaseRange(const PageRange& range) noexcept {
    VirtualFree(range.begin, 0, MEM_RELEASE);
}

// Pages count against the system's memory once they are committed, so they are
// committed a good step at a time.
bool commit(PageRange& range, std::size_t wantedBytes) noexcept {
    constexpr std::size_t STEP_SHARE = 8;
    const std::size_t enough = roundedUp(wantedBytes, PAGE_STEP);
    const std::size_t generous =
        std::min(roundedUp(wantedBytes + wantedBytes / STEP_SHARE, PAGE_STEP), range.addressBytes);
    for (const std::size_t bytes : {generous, enough}) {
        char* behind = static_cast<char*>(range.begin) + range.usableBytes;
        if (VirtualAlloc(behind, bytes - range.usableBytes, MEM_COMMIT, PAGE_READWRITE) !=
            nullptr) {
            range.usableBytes = bytes;
            return true;
        }
    }
    return false;
}

PageRange makeRange(std::size_t wantedBytes, std::size_t likelyBytes) noexcept {
    const std::size_t enough = roundedUp(wantedBytes, PAGE_STEP);
    const std::size_t likely = roundedUp(std::max(likelyBytes, SMALLEST_RANGE), PAGE_STEP);
    for (const std::size_t addressBytes : {likely, enough}) {
        void* begin = VirtualAlloc(nullptr, addressBytes, MEM_RESERVE, PAGE_READWRITE);
        if (begin == nullptr)
            continue;
        PageRange range{begin, 0, addressBytes};
        if (commit(range, wantedBytes))
            return range;
        releaseRange(range);
    }
    return {};
}

PageRange extendRange(const PageRange& old, std::size_t wantedBytes) noexcept {
    PageRange extended = old;
    return commit(extended, wantedBytes) ? extended : PageRange{};
}

// Within its range a block stays where it is; beyond it, it is copied.
PageRange growRange(const PageRange& old, std::size_t usedBytes, std::size_t wantedBytes,
                    std::size_t likelyBytes) noexcept {
    if (wantedBytes <= old.addressBytes)
        return extendRange(old, wantedBytes);
    const PageRange grown = makeRange(wantedBytes, likelyBytes);
    if (grown.begin == nullptr)
        return {};
    std::memcpy(grown.begin, old.begin, usedBytes);
    releaseRange(old);
    return grown;
}

void shrinkRange(PageRange& range, std::size_t usedBytes) noexcept {
    const std::size_t kept = roundedUp(usedBytes, PAGE_STEP);
    if (kept >= range.usableBytes)
        return;
    char* behind = static_cast<char*>(range.begin) + kept;
    if (VirtualFree(behind, range.usableBytes - kept, MEM_DECOMMIT) != 0)
        range.usableBytes = kept;
}

#else

PageRange makeRange(std::size_t, std::size_t) noexcept {
    return {};
}

PageRange growRange(const PageRange&, std::size_t, std::size_t, std::size_t) noexcept {
    return {};
}

PageRange extendRange(const PageRange&, std::size_t) noexcept {
    return {};
}

void shrinkRange(PageRange&, std::size_t) noexcept {}

void releaseRange(const PageRange&) noexcept {}

#endif

}  // namespace

GrowingMemory& GrowingMemory::operator=(GrowingMemory&& other) noexcept {
    if (this != &other) {
        release();
        swap(other);
    }
    return *this;
}

void GrowingMemory::grow(std::size_t usedBytes, std::size_t wantedBytes, std::size_t likelyBytes) {
    assert(usedBytes <= block.capacity && wantedBytes > block.capacity &&
           likelyBytes >= wantedBytes);
    if (wantedBytes < SMALLEST_OWN_PAGES)
        growOnHeap(usedBytes, wantedBytes, std::min(likelyBytes, SMALLEST_OWN_PAGES));
    else if (!growOnPages(usedBytes, wantedBytes, likelyBytes))
        growOnHeap(usedBytes, wantedBytes, std::min(likelyBytes, 2 * wantedBytes));
}

bool GrowingMemory::extend(std::size_t wantedBytes) noexcept {
    if (block.origin != Origin::PAGES || wantedBytes > block.addressBytes || arePagesRefused())
        return false;
    const PageRange range =
        extendRange({block.begin, block.capacity, block.addressBytes}, wantedBytes);
    if (range.begin == nullptr)
        return false;
    block.capacity = range.usableBytes;
    return true;
}

void GrowingMemory::shrink(std::size_t usedBytes) noexcept {
    if (usedBytes == 0) {
        release();
        return;
    }
    if (block.origin == Origin::PAGES) {
        PageRange range{block.begin, block.capacity, block.addressBytes};
        shrinkRange(range, usedBytes);
        block.capacity = range.usableBytes;
        block.addressBytes = range.addressBytes;
        return;
    }
    if (usedBytes == block.capacity)
        return;
    if (void* smaller = ::operator new(usedBytes, std::nothrow)) {
        std::memcpy(smaller, block.begin, usedBytes);
        ::operator delete(block.begin);
        block.begin = smaller;
        block.capacity = usedBytes;
    }
}

void GrowingMemory::swap(GrowingMemory& other) noexcept {
    std::swap(block, other.block);
}

// False, with the block as it was, when the system gives no pages.
bool GrowingMemory::growOnPages(std::size_t usedBytes, std::size_t wantedBytes,
                                std::size_t likelyBytes) noexcept {
    if (likelyBytes > MOST_PAGE_BYTES || arePagesRefused())
        return false;
    PageRange range;
    if (block.origin == Origin::PAGES) {
        range = growRange({block.begin, block.capacity, block.addressBytes}, usedBytes, wantedBytes,
                          likelyBytes);
        if (range.begin == nullptr)
            return false;
    } else {
        range = makeRange(wantedBytes, likelyBytes);
        if (range.begin == nullptr)
            return false;
        if (usedBytes > 0)
            std::memcpy(range.begin, block.begin, usedBytes);
        ::operator delete(block.begin);
    }
    block = {range.begin, range.usableBytes, range.addressBytes, Origin::PAGES};
    return true;
}

// Where the likely size is not to be had, the wanted one may be.
void GrowingMemory::growOnHeap(std::size_t usedBytes, std::size_t wantedBytes,
                               std::size_t likelyBytes) {
    std::size_t bytes = likelyBytes;
    void* grown = likelyBytes > wantedBytes ? ::operator new(bytes, std::nothrow) : nullptr;
    if (grown == nullptr) {
        bytes = wantedBytes;
        grown = ::operator new(bytes);
    }
    if (usedBytes > 0)
        std::memcpy(grown, block.begin, usedBytes);
    release();
    block = {grown, bytes, 0, Origin::HEAP};
}

void GrowingMemory::release() noexcept {
    if (block.origin == Origin::PAGES)
        releaseRange({block.begin, block.capacity, block.addressBytes});
    else
        ::operator delete(block.begin);
    block = Block();
}

}  // namespace obj_adapter::platform
