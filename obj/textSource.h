// Internal: text files and their logical lines, for OBJ and MTL alike.
#pragma once

#include <cstddef>
#include <fstream>
#include <istream>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace obj_adapter {

// The longest line, in bytes: what a signed 32-bit length can count.
constexpr std::size_t MAX_LINE_LENGTH = 2147483647;

// Gives the length back.
//
// Throws std::length_error when it is more than MAX_LINE_LENGTH.
std::size_t checkedLineLength(std::size_t length);

// Opens a file for reading in the platform's own input mode. The name is UTF-8.
//
// std::runtime_error  "File Name empty", "Unable to open file" (a directory
//                     too), or "File empty" when the stream stands at its end
//                     right after opening, which a zero-length file does not
void openTextFile(std::ifstream& stream, const std::string& fileName);

// Reads a stream in large blocks and hands out its lines in place.
//
// A line that ends in a backslash is joined with the next one, once, without
// the backslash and the line feed between. The line feed at the end of a line
// is dropped; a carriage return stays.
class LogicalLineReader {
public:
    explicit LogicalLineReader(std::istream& source);
    LogicalLineReader(const LogicalLineReader&) = delete;
    LogicalLineReader& operator=(const LogicalLineReader&) = delete;

    // The next line, valid until the next call; false at the end of the text.
    //
    // std::runtime_error "Unable to read file" when the stream fails before its
    // end; std::length_error when the line is too long.
    bool next(std::string_view& line);

private:
    bool nextPhysical(std::string_view& line);
    bool fill();

    std::istream& stream;
    std::vector<char> buffer;
    std::size_t lineBegin = 0;  // the first byte not handed out
    std::size_t dataEnd = 0;    // behind the last byte read
    bool streamHasEnded = false;
    std::string joinedLine;
};

// An open file and the reader of its lines.
class TextFile {
public:
    // Opens as openTextFile does.
    explicit TextFile(const std::string& fileName);
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    LogicalLineReader& getLines() noexcept { return *lines; }

private:
    std::vector<char> streamBuffer;  // outlives the stream that reads into it
    std::ifstream stream;
    std::unique_ptr<LogicalLineReader> lines;
};

}  // namespace obj_adapter
