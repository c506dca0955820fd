// Generated input that is the same on every platform.
#pragma once

#include <cstdint>
#include <random>

namespace obj_adapter::test {

// Numbers from a fixed seed. The standard distributions differ between
// libraries, so only the generator itself is used.
class RandomSource {
public:
    explicit RandomSource(std::uint64_t seed) : generator(seed) {}

    // 0 <= result < bound
    int below(int bound) {
        return static_cast<int>(generator() % static_cast<std::uint64_t>(bound));
    }

    // low <= result <= high
    int between(int low, int high) { return low + below(high - low + 1); }

    // 0 <= result < 1, in steps of 2^-53
    double fraction() { return static_cast<double>(generator() >> 11U) * 0x1p-53; }

    bool oneIn(int chances) { return below(chances) == 0; }

private:
    std::mt19937_64 generator;
};

}  // namespace obj_adapter::test
