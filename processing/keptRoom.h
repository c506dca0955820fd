// Internal: working memory that is kept from one use to the next.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace obj_adapter {

// Room for up to MAX_WITHIN elements stands in the object itself, so that short
// lists never ask for memory; longer ones do when they are longer than any before.
template <typename Element, std::size_t MAX_WITHIN>
class KeptRoom {
public:
    // As many elements as wanted, with any values. The room is the same for every
    // call: the earlier list is lost.
    std::span<Element> take(std::size_t count) {
        if (count <= MAX_WITHIN)
            return std::span<Element>(within).first(count);
        if (beyond.size() < count)
            beyond.resize(count);
        return std::span<Element>(beyond).first(count);
    }

private:
    std::array<Element, MAX_WITHIN> within;
    std::vector<Element> beyond;
};

}  // namespace obj_adapter
