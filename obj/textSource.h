// Internal: text files and their logical lines, for OBJ and MTL alike.
#pragma once

#include "platform/inputFile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

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
//                     too), or "File empty" when the file stands at its end
//                     right after opening, which a zero-length file does not
void openTextFile(platform::InputFile& file, const std::string& fileName);

// Where the bytes of a text come from.
class TextSource {
public:
    // Up to room bytes, which is more than none; at least one unless the text has
    // ended.
    //
    // std::runtime_error "Unable to read file" when reading fails.
    virtual std::size_t read(char* to, std::size_t room) = 0;

protected:
    TextSource() = default;
    ~TextSource() = default;
    TextSource(const TextSource&) = default;
    TextSource& operator=(const TextSource&) = default;
};

// Reads a text in large blocks and hands out its lines in place.
//
// A line that ends in a backslash is joined with the next one, once, without
// the backslash and the line feed between. The line feed at the end of a line
// is dropped; a carriage return stays.
class LogicalLineReader {
public:
    explicit LogicalLineReader(TextSource& textSource) noexcept : source(textSource) {}
    LogicalLineReader(const LogicalLineReader&) = delete;
    LogicalLineReader& operator=(const LogicalLineReader&) = delete;

    // The next line, valid until the next call; false at the end of the text.
    //
    // std::runtime_error "Unable to read file" when the source fails before its
    // end; std::length_error when the line is too long; ImportCancelled when the host
    // wants to stop.
    bool next(std::string_view& line);

    // Lines that stand ready in the block, none joined, each with its line feed; as
    // many as there are whole, so often none. At least BYTES_BEHIND_LINES more bytes
    // may be read behind them, whatever these are. Valid until the next call of
    // next().
    std::string_view getReadyLines() noexcept {
        lineIsJoined = false;
        return {buffer.get() + lineBegin, readyEnd - lineBegin};
    }
    static constexpr std::size_t BYTES_BEHIND_LINES = 16;

    // Takes so many bytes of the ready lines as read: whole lines, which were counted.
    void skipReadyLines(std::size_t length) noexcept { lineBegin += length; }

    // Who reads the ready lines counts them, before anything else can ask for the number.
    void countReadyLines(std::size_t count) noexcept { linesTaken += count; }

    // How long the whole text will be: what is read of it is then told to the host as
    // its share of the stage. 0: not known.
    void setExpectedSize(std::uint64_t size) noexcept { expectedSize = size; }

    // The line that was handed out last, or counted, from 1; of joined lines the
    // first. 0 before the first line and behind the last.
    std::size_t getLineNumber() const noexcept {
        return isAtEnd ? 0 : linesTaken - (lineIsJoined ? 1 : 0);
    }

private:
    bool nextPhysical(std::string_view& line);
    bool fill();
    void countBytes(std::size_t length);
    void makeRoom();

    TextSource& source;
    std::unique_ptr<char[]> buffer;
    std::size_t capacity = 0;   // of the buffer, without the bytes behind
    std::size_t lineBegin = 0;  // the first byte not handed out
    std::size_t readyEnd = 0;   // behind the last line feed, or lineBegin if that is more
    std::size_t dataEnd = 0;    // behind the last byte read
    std::uint64_t bytesRead = 0;
    std::uint64_t expectedSize = 0;
    bool sourceHasEnded = false;
    bool isAtEnd = false;        // and no line is left
    std::size_t linesTaken = 0;  // as they stand in the text
    bool lineIsJoined = false;   // the last one, of two
    std::string joinedLine;
};

// A text in memory, which outlives this, and the reader of its lines.
class MemoryText final : private TextSource {
public:
    explicit MemoryText(std::string_view wholeText) noexcept : rest(wholeText) {}
    MemoryText(const MemoryText&) = delete;
    MemoryText& operator=(const MemoryText&) = delete;

    LogicalLineReader& getLines() noexcept { return lines; }

private:
    std::size_t read(char* to, std::size_t room) override;

    std::string_view rest;
    LogicalLineReader lines{*this};
};

// An open file and the reader of its lines.
class TextFile final : private TextSource {
public:
    // Opens as openTextFile does.
    explicit TextFile(const std::string& fileName) { openTextFile(file, fileName); }
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    LogicalLineReader& getLines() noexcept { return lines; }

    // 0 where it cannot be known.
    std::uint64_t getSize() const noexcept { return file.getSize(); }

private:
    std::size_t read(char* to, std::size_t room) override;

    platform::InputFile file;
    LogicalLineReader lines{*this};
};

}  // namespace obj_adapter
