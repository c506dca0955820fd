// The points whose merging is measured, the same for us and for the others.
#pragma once

#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace obj_adapter::bench {

struct BenchPoint {
    double x;
    double y;
    double z;
};

// A number that depends on another in no simple way: the mixing steps of SplitMix64
// (Steele, Lea, Flood, 2014).
inline std::uint64_t mixed(std::uint64_t number) {
    std::uint64_t state = 0x9e3779b97f4a7c15U * (number + 1);
    state = (state ^ state >> 30U) * 0xbf58476d1ce4e5b9U;
    state = (state ^ state >> 27U) * 0x94d049bb133111ebU;
    return state ^ state >> 31U;
}

// 0 <= result < 1
inline double fractionOf(std::uint64_t number) {
    return static_cast<double>(mixed(number) >> 11U) * 0x1p-53;
}

// The points of one input, by number.
//
// random   anywhere in a cube
// sixfold  the same, each of them six times, at places far apart
// file     row by row over a hilly square, as files have them
// equal-x  a hundred values of x, the rest random
class BenchPoints {
public:
    BenchPoints(const std::string& input, std::int64_t ownCount) : count(ownCount) {
        if (input == "random")
            kind = Kind::RANDOM;
        else if (input == "sixfold")
            kind = Kind::SIXFOLD;
        else if (input == "file")
            kind = Kind::FILE;
        else if (input == "equal-x")
            kind = Kind::EQUAL_X;
        else
            throw std::runtime_error("no such points: " + input);
        side = static_cast<std::int64_t>(std::sqrt(static_cast<double>(count))) + 1;
    }

    BenchPoint at(std::int64_t number) const {
        constexpr std::uint64_t COPIES = 6;
        constexpr std::uint64_t VALUES_OF_X = 100;
        const auto place = static_cast<std::uint64_t>(number);
        switch (kind) {
            case Kind::RANDOM:
                return randomPoint(place);
            case Kind::SIXFOLD:
                return randomPoint(mixed(place) % (static_cast<std::uint64_t>(count) / COPIES));
            case Kind::FILE:
                return filePoint(number);
            case Kind::EQUAL_X:
                break;
        }
        BenchPoint point = randomPoint(place);
        point.x = static_cast<double>(mixed(place) % VALUES_OF_X);
        return point;
    }

private:
    enum class Kind { RANDOM, SIXFOLD, FILE, EQUAL_X };

    static BenchPoint randomPoint(std::uint64_t place) {
        constexpr double SPREAD = 100;
        return {SPREAD * fractionOf(3 * place), SPREAD * fractionOf(3 * place + 1),
                SPREAD * fractionOf(3 * place + 2)};
    }

    // Six decimals, as files have them.
    BenchPoint filePoint(std::int64_t number) const {
        constexpr double DECIMALS = 1e6;
        constexpr double UNEVENNESS = 0.05;
        constexpr double SPACING = 0.125;
        const auto place = static_cast<std::uint64_t>(number);
        const auto rounded = [](double value) { return std::round(DECIMALS * value) / DECIMALS; };
        return {rounded(SPACING * static_cast<double>(number % side) +
                        UNEVENNESS * fractionOf(3 * place)),
                rounded(SPACING * static_cast<double>(number / side) +
                        UNEVENNESS * fractionOf(3 * place + 1)),
                rounded(fractionOf(3 * place + 2))};
    }

    Kind kind;
    std::int64_t count;
    std::int64_t side;
};

}  // namespace obj_adapter::bench
