// Text files and their logical lines. Covered by tests/obj/textSourceTest.cpp.
#include "obj/textSource.h"

#include "converter/progress.h"

#include <algorithm>
#include <cstring>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace obj_adapter {

namespace {

// Large enough that system calls do not count, small enough for the cache.
constexpr std::size_t BLOCK_SIZE = std::size_t{64} * 1024;

}  // namespace

std::size_t checkedLineLength(std::size_t length) {
    if (length > MAX_LINE_LENGTH)
        throw std::length_error("Line too long");
    return length;
}

void openTextFile(platform::InputFile& file, const std::string& fileName) {
    if (fileName.empty())
        throw std::runtime_error("File Name empty");
    if (!file.open(fileName))
        throw std::runtime_error("Unable to open file");
    if (file.isDirectory()) {
        file.close();
        throw std::runtime_error("Unable to open file");
    }
    // Opening reads nothing, so this does not tell a zero-length file; such a
    // file opens and gives no lines.
    if (file.hasEnded()) {
        file.close();
        throw std::runtime_error("File empty");
    }
}

bool LogicalLineReader::next(std::string_view& line) {
    lineIsJoined = false;
    if (!nextPhysical(line)) {
        isAtEnd = true;
        return false;
    }
    if (line.empty() || line.back() != '\\')
        return true;
    line.remove_suffix(1);
    joinedLine.assign(line);
    std::string_view continuation;
    if (nextPhysical(continuation)) {
        checkedLineLength(joinedLine.size() + continuation.size());
        joinedLine.append(continuation);
        lineIsJoined = true;
    }
    line = joinedLine;
    return true;
}

// The bytes up to the next line feed, in place; false when none are left.
bool LogicalLineReader::nextPhysical(std::string_view& line) {
    while (lineBegin == readyEnd) {
        checkedLineLength(dataEnd - lineBegin);
        if (fill())
            continue;
        line = std::string_view(buffer.get() + lineBegin, dataEnd - lineBegin);
        lineBegin = dataEnd;
        readyEnd = dataEnd;
        linesTaken += line.empty() ? 0 : 1;
        return !line.empty();
    }
    const char* begin = buffer.get() + lineBegin;
    const void* lineFeed = std::memchr(begin, '\n', readyEnd - lineBegin);
    const auto length = static_cast<std::size_t>(static_cast<const char*>(lineFeed) - begin);
    line = std::string_view(begin, checkedLineLength(length));
    lineBegin += length + 1;
    ++linesTaken;
    return true;
}

// Reads more behind the bytes not yet handed out, which hold no line feed; false
// at the end of the text.
bool LogicalLineReader::fill() {
    if (sourceHasEnded)
        return false;
    makeRoom();
    char* const fresh = buffer.get() + dataEnd;
    const std::size_t length = source.read(fresh, capacity - dataEnd);
    if (length == 0) {
        sourceHasEnded = true;
        return false;
    }
    dataEnd += length;
    std::fill_n(buffer.get() + dataEnd, BYTES_BEHIND_LINES, '\0');
    const auto behindLastLineFeed = std::find(std::make_reverse_iterator(fresh + length),
                                              std::make_reverse_iterator(fresh), '\n')
                                        .base();
    if (behindLastLineFeed != fresh)
        readyEnd = static_cast<std::size_t>(behindLastLineFeed - buffer.get());
    countBytes(length);
    return true;
}

// A file may be longer than it was, or shorter as a text than as it is stored.
void LogicalLineReader::countBytes(std::size_t length) {
    bytesRead += length;
    if (expectedSize == 0)
        countWork(length);
    else
        countWork(length, std::min(1.0, static_cast<double>(bytesRead) /
                                            static_cast<double>(expectedSize)));
}

// Moves the bytes not yet handed out to the front, of a larger buffer when they
// fill this one.
void LogicalLineReader::makeRoom() {
    const std::size_t kept = dataEnd - lineBegin;
    if (kept == capacity) {
        const std::size_t grown =
            capacity == 0 ? BLOCK_SIZE : std::min(2 * capacity, MAX_LINE_LENGTH + BLOCK_SIZE);
        // What is not read into is never touched, and so costs no memory.
        auto larger = std::make_unique_for_overwrite<char[]>(grown + BYTES_BEHIND_LINES);
        if (kept > 0)
            std::memcpy(larger.get(), buffer.get() + lineBegin, kept);
        buffer = std::move(larger);
        capacity = grown;
    } else if (lineBegin > 0) {
        std::memmove(buffer.get(), buffer.get() + lineBegin, kept);
    }
    lineBegin = 0;
    readyEnd = 0;
    dataEnd = kept;
}

std::size_t MemoryText::read(char* to, std::size_t room) {
    const std::size_t length = std::min(room, rest.size());
    std::copy_n(rest.data(), length, to);
    rest.remove_prefix(length);
    return length;
}

std::size_t TextFile::read(char* to, std::size_t room) {
    const std::ptrdiff_t length = file.read(to, room);
    if (length < 0)
        throw std::runtime_error("Unable to read file");
    return static_cast<std::size_t>(length);
}

}  // namespace obj_adapter
