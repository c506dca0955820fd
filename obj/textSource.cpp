// Text files and their logical lines. Covered by tests/obj/textSourceTest.cpp.
#include "obj/textSource.h"

#include "platform/fileSystem.h"

#include <algorithm>
#include <cstring>
#include <locale>
#include <stdexcept>

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

void openTextFile(std::ifstream& stream, const std::string& fileName) {
    if (fileName.empty())
        throw std::runtime_error("File Name empty");
    // A locale of the host's may convert the bytes; they are wanted as they are.
    stream.imbue(std::locale::classic());
    if (!platform::openForReading(stream, fileName))
        throw std::runtime_error("Unable to open file");
    // Some platforms open a directory like a file and fail at the first read.
    if (platform::isDirectory(fileName)) {
        stream.close();
        throw std::runtime_error("Unable to open file");
    }
    // Opening reads nothing, so this does not tell a zero-length file; such a
    // file opens and gives no lines.
    if (stream.eof()) {
        stream.close();
        throw std::runtime_error("File empty");
    }
}

LogicalLineReader::LogicalLineReader(std::istream& source) : stream(source), buffer(BLOCK_SIZE) {}

bool LogicalLineReader::next(std::string_view& line) {
    if (!nextPhysical(line))
        return false;
    if (line.empty() || line.back() != '\\')
        return true;
    line.remove_suffix(1);
    joinedLine.assign(line);
    std::string_view continuation;
    if (nextPhysical(continuation)) {
        checkedLineLength(joinedLine.size() + continuation.size());
        joinedLine.append(continuation);
    }
    line = joinedLine;
    return true;
}

// The bytes up to the next line feed, in place; false when none are left.
bool LogicalLineReader::nextPhysical(std::string_view& line) {
    std::size_t searched = 0;
    for (;;) {
        const std::size_t available = dataEnd - lineBegin;
        const char* begin = buffer.data() + lineBegin;
        if (available > searched) {
            const void* lineFeed = std::memchr(begin + searched, '\n', available - searched);
            if (lineFeed != nullptr) {
                const auto length =
                    static_cast<std::size_t>(static_cast<const char*>(lineFeed) - begin);
                line = std::string_view(begin, checkedLineLength(length));
                lineBegin += length + 1;
                return true;
            }
        }
        searched = checkedLineLength(available);
        if (fill())
            continue;
        if (available == 0)
            return false;
        line = std::string_view(buffer.data() + lineBegin, available);
        lineBegin = dataEnd;
        return true;
    }
}

// Reads more behind the bytes not yet handed out, which move to the front;
// false at the end of the stream.
bool LogicalLineReader::fill() {
    if (streamHasEnded)
        return false;
    if (stream.peek() == std::istream::traits_type::eof()) {
        if (stream.bad() || !stream.eof())
            throw std::runtime_error("Unable to read file");
        streamHasEnded = true;
        return false;
    }
    const std::size_t kept = dataEnd - lineBegin;
    if (lineBegin > 0)
        std::memmove(buffer.data(), buffer.data() + lineBegin, kept);
    lineBegin = 0;
    dataEnd = kept;
    if (kept == buffer.size())
        buffer.resize(std::min(2 * kept, MAX_LINE_LENGTH + BLOCK_SIZE));

    // Only what stands ready: nothing is lost when the read after it fails, which
    // shows at the next call.
    const std::streamsize ready = std::max<std::streamsize>(stream.rdbuf()->in_avail(), 1);
    const auto room = static_cast<std::streamsize>(buffer.size() - kept);
    stream.read(buffer.data() + kept, std::min(ready, room));
    dataEnd += static_cast<std::size_t>(stream.gcount());
    return true;
}

TextFile::TextFile(const std::string& fileName) : streamBuffer(BLOCK_SIZE) {
    stream.rdbuf()->pubsetbuf(streamBuffer.data(),
                              static_cast<std::streamsize>(streamBuffer.size()));
    openTextFile(stream, fileName);
    lines = std::make_unique<LogicalLineReader>(stream);
}

}  // namespace obj_adapter
