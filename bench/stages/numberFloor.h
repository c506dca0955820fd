// The least that reading an OBJ file can cost: lines found, keywords told apart,
// every number converted exactly; nothing is checked, repaired or reported.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace obj_adapter::bench {

// Reads a file in blocks and hands out whole lines of each. Behind the last line
// of the file stands a zero byte, where it has no line feed.
class BlockReader {
public:
    // Throws std::runtime_error when the file cannot be opened.
    explicit BlockReader(const std::string& fileName);
    ~BlockReader();
    BlockReader(const BlockReader&) = delete;
    BlockReader& operator=(const BlockReader&) = delete;

    // The next whole lines; false at the end. Lines longer than a block make it
    // grow.
    bool next(const char*& begin, const char*& end);

    // The next bytes, whatever they are.
    bool nextBytes(const char*& begin, const char*& end);

private:
    static constexpr std::size_t BLOCK_SIZE = std::size_t{128} * 1024;
    static constexpr std::size_t PADDING = 1;

    std::size_t readMore();

    int file;
    std::vector<char> buffer;
    std::size_t handedOut = 0;  // behind the lines that were handed out
    std::size_t dataEnd = 0;
};

inline constexpr std::array<double, 23> POWERS_OF_TEN = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Adds a run of digits to the mantissa; the count of them is returned. One digit
// at a time, four in a turn: eight at a time, with shifts and masks, was measured and is
// slower, because the numbers of OBJ files are short.
inline int takeDigits(const char*& position, std::uint64_t& mantissa) noexcept {
    constexpr int TURN = 4;
    const char* begin = position;
    for (;; position += TURN) {
        for (int place = 0; place < TURN; ++place) {
            const auto digit = static_cast<unsigned char>(position[place] - '0');
            if (digit >= 10) {
                position += place;
                return static_cast<int>(position - begin);
            }
            mantissa = 10 * mantissa + digit;
        }
    }
}

// Moves behind the number.
inline double takeDouble(const char*& position, const char* end) {
    constexpr std::uint64_t MAX_EXACT_MANTISSA = std::uint64_t{1} << 53U;
    constexpr int MAX_DIGITS = 19;
    constexpr int MAX_EXACT_POWER = 22;
    const char* begin = position;
    const bool isNegative = *position == '-';
    position += isNegative ? 1 : 0;
    std::uint64_t mantissa = 0;
    int digitCount = takeDigits(position, mantissa);
    int decimals = 0;
    if (*position == '.') {
        ++position;
        decimals = takeDigits(position, mantissa);
        digitCount += decimals;
    }
    const bool hasExponent = (*position | ' ') == 'e';
    if (!hasExponent && digitCount <= MAX_DIGITS && mantissa <= MAX_EXACT_MANTISSA &&
        decimals <= MAX_EXACT_POWER) {
        const double value =
            static_cast<double>(mantissa) / POWERS_OF_TEN[static_cast<std::size_t>(decimals)];
        return isNegative ? -value : value;
    }
    double value = 0;
    position = std::from_chars(begin, end, value).ptr;
    return value;
}

inline std::int32_t takeInt(const char*& position) noexcept {
    const bool isNegative = *position == '-';
    position += isNegative ? 1 : 0;
    std::uint64_t value = 0;
    takeDigits(position, value);
    return static_cast<std::int32_t>(isNegative ? -value : value);
}

// A corner of a face; 0 where an index is missing.
struct RawCorner {
    std::int32_t indices[3];  // v, vt, vn
};

inline RawCorner takeCorner(const char*& position) noexcept {
    RawCorner corner{};
    corner.indices[0] = takeInt(position);
    for (int kind = 1; kind < 3 && *position == '/'; ++kind) {
        ++position;
        corner.indices[kind] = takeInt(position);
    }
    return corner;
}

inline const char* skipBlanks(const char* position) noexcept {
    while (*position == ' ' || *position == '\t')
        ++position;
    return position;
}

// Reads lines and gives what they say to a sink, which has
//     addVertex(x, y, z, w), addTexturePoint(u, v, w), addNormal(x, y, z),
//     addCorner(RawCorner), endFace(), changeGroup(), changeMaterial()
template <typename Sink>
class PlainReader {
public:
    explicit PlainReader(Sink& ownSink) : sink(ownSink) {}

    void read(const std::string& fileName) {
        BlockReader blocks(fileName);
        const char* begin = nullptr;
        const char* end = nullptr;
        while (blocks.next(begin, end)) {
            while (begin < end)
                begin = readLine(begin, end);
        }
    }

private:
    // The line that begins here; returns where the next one does.
    const char* readLine(const char* position, const char* end) {
        if (*position == 'v')
            position = readNumbers(position + 1, end);
        else if (*position == 'f')
            position = readFace(position + 1);
        else if (*position == 'g' || *position == 'o')
            sink.changeGroup();
        else if (*position == 'u')
            sink.changeMaterial();
        if (*position == '\n')
            return position + 1;
        const void* lineFeed =
            std::memchr(position, '\n', static_cast<std::size_t>(end - position));
        return lineFeed == nullptr ? end : static_cast<const char*>(lineFeed) + 1;
    }

    const char* readNumbers(const char* position, const char* end) {
        const char kind = *position;
        position = skipBlanks(kind == ' ' ? position : position + 1);
        const double first = takeDouble(position, end);
        position = skipBlanks(position);
        const double second = takeDouble(position, end);
        position = skipBlanks(position);
        const bool hasThird = *position > ' ';
        const double third = hasThird ? takeDouble(position, end) : 0.0;
        if (kind == 'n') {
            sink.addNormal(first, second, third);
        } else if (kind == 't') {
            sink.addTexturePoint(first, second, third);
        } else {
            position = skipBlanks(position);
            sink.addVertex(first, second, third, *position > ' ' ? takeDouble(position, end) : 1.0);
        }
        return position;
    }

    const char* readFace(const char* position) {
        for (position = skipBlanks(position); *position > ' '; position = skipBlanks(position)) {
            const char* before = position;
            sink.addCorner(takeCorner(position));
            if (position == before)
                break;
        }
        sink.endFace();
        return position;
    }

    Sink& sink;
};

}  // namespace obj_adapter::bench
