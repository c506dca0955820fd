// What the fuzzers share: their input cut into numbers and pieces, and the way to
// say that something is wrong.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace obj_adapter::fuzz {

// Ends the process, which the fuzzer takes for a finding and keeps the input.
[[noreturn]] inline void fail(const std::string& what) {
    std::fprintf(stderr, "found: %s\n", what.c_str());
    std::abort();
}

inline void require(bool holds, const std::string& what) {
    if (!holds)
        fail(what);
}

inline void requireEqual(const std::string& result, const std::string& expected,
                         const std::string& what) {
    if (result != expected)
        fail(what + "\nexpected\n" + expected + "\ngot\n" + result);
}

// Bytes taken one after the other; zeros when there are no more.
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : position(data), end(data + size) {}

    bool empty() const { return position == end; }
    std::uint8_t next() { return position == end ? std::uint8_t{0} : *position++; }

    // 0 <= result < bound, which is 256 at the most
    int below(int bound) { return next() % bound; }

    // Any value that a double can have.
    double nextDouble() {
        std::uint8_t bytes[sizeof(double)];
        for (std::uint8_t& byte : bytes)
            byte = next();
        double value = 0.0;
        std::memcpy(&value, bytes, sizeof value);
        return value;
    }

    std::string_view rest() const {
        return {reinterpret_cast<const char*>(position), static_cast<std::size_t>(end - position)};
    }

private:
    const std::uint8_t* position;
    const std::uint8_t* end;
};

// A coordinate: most lie on a small grid, so that positions coincide and polygons
// are flat.
inline double nextCoordinate(Bytes& bytes) {
    constexpr int KINDS = 256;
    constexpr int ODD_KINDS = 12;
    constexpr int GRID = 5;
    static const double ODD[] = {0.5,    -0.0, 1e-320, 5e-324,   1e308,    -1e308,
                                 1e-160, 1e77, 0.1,    HUGE_VAL, -HUGE_VAL};
    const int kind = bytes.below(KINDS);
    if (kind == 0)
        return bytes.nextDouble();
    if (kind < ODD_KINDS)
        return ODD[kind - 1];
    return kind % GRID;
}

}  // namespace obj_adapter::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
