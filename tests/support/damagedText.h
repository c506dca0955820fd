// Texts that are damaged at random.
#pragma once

#include "support/randomSource.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace obj_adapter::test {

// Puts one of the bytes in place of another of the text, which has one, or between two,
// or takes one out.
inline void damage(RandomSource& random, std::string_view bytes, std::string& text) {
    const auto place = static_cast<std::size_t>(random.below(static_cast<int>(text.size())));
    const char byte = bytes[static_cast<std::size_t>(random.below(static_cast<int>(bytes.size())))];
    switch (random.below(3)) {
        case 0:
            text[place] = byte;
            break;
        case 1:
            text.insert(place, 1, byte);
            break;
        default:
            text.erase(place, 1);
            break;
    }
}

}  // namespace obj_adapter::test
