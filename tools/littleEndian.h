// Numbers as bytes, the lowest first, whatever the machine.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

namespace obj_adapter::tool {

template <typename Unsigned>
void appendUnsigned(std::string& bytes, Unsigned value) {
    constexpr int BITS_OF_A_BYTE = 8;
    constexpr unsigned LOWEST_BYTE = 0xFFU;
    for (std::size_t place = 0; place < sizeof(Unsigned); ++place) {
        const auto shift = static_cast<int>(place) * BITS_OF_A_BYTE;
        bytes += static_cast<char>((static_cast<std::uint64_t>(value) >> shift) & LOWEST_BYTE);
    }
}

inline void appendFloat(std::string& bytes, float value) {
    appendUnsigned(bytes, std::bit_cast<std::uint32_t>(value));
}

inline void appendDouble(std::string& bytes, double value) {
    appendUnsigned(bytes, std::bit_cast<std::uint64_t>(value));
}

}  // namespace obj_adapter::tool
