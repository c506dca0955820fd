// Where the generators write: a file, in large blocks.
#pragma once

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace obj_adapter::bench {

// Appends text and numbers to a file and counts the bytes. Numbers are printed
// without the locale, the same on every platform.
class TextSink {
public:
    // Throws std::runtime_error when the file cannot be written, here or later.
    explicit TextSink(const std::string& fileName);
    ~TextSink();
    TextSink(const TextSink&) = delete;
    TextSink& operator=(const TextSink&) = delete;

    TextSink& operator<<(std::string_view text) {
        buffer.append(text);
        byteCount += static_cast<std::int64_t>(text.size());
        if (buffer.size() >= BLOCK_SIZE)
            flush();
        return *this;
    }

    TextSink& operator<<(std::int64_t number) {
        char digits[NUMBER_LENGTH];
        const auto end = std::to_chars(digits, digits + NUMBER_LENGTH, number).ptr;
        return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
    }

    // A blank and the number with so many decimals.
    TextSink& writeFixed(double number, int decimals) {
        return writeNumber(number, std::chars_format::fixed, decimals);
    }

    // A blank and the number with so many decimals and an exponent.
    TextSink& writeScientific(double number, int decimals) {
        return writeNumber(number, std::chars_format::scientific, decimals);
    }

    std::int64_t getByteCount() const noexcept { return byteCount; }

    // Writes what is left; to be called at the end, for a failure to be noticed.
    void close();

private:
    static constexpr std::size_t BLOCK_SIZE = std::size_t{1} << 20U;
    static constexpr std::size_t NUMBER_LENGTH = 512;  // the longest double with some decimals

    TextSink& writeNumber(double number, std::chars_format format, int decimals);
    void flush();

    std::FILE* file;
    std::string buffer;
    std::int64_t byteCount = 0;
};

}  // namespace obj_adapter::bench
