// Reading in blocks; see the header.
#include "stages/numberFloor.h"

#include <stdexcept>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace obj_adapter::bench {

BlockReader::BlockReader(const std::string& fileName)
    : file(open(fileName.c_str(), O_RDONLY | O_CLOEXEC)), buffer(BLOCK_SIZE + PADDING) {
    if (file < 0)
        throw std::runtime_error("cannot open " + fileName);
}

BlockReader::~BlockReader() {
    close(file);
}

// How many bytes came in behind dataEnd.
std::size_t BlockReader::readMore() {
    const ssize_t count = ::read(file, buffer.data() + dataEnd, buffer.size() - PADDING - dataEnd);
    if (count < 0)
        throw std::runtime_error("cannot read an input file");
    dataEnd += static_cast<std::size_t>(count);
    return static_cast<std::size_t>(count);
}

bool BlockReader::nextBytes(const char*& begin, const char*& end) {
    dataEnd = 0;
    if (readMore() == 0)
        return false;
    begin = buffer.data();
    end = begin + dataEnd;
    return true;
}

bool BlockReader::next(const char*& begin, const char*& end) {
    std::memmove(buffer.data(), buffer.data() + handedOut, dataEnd - handedOut);
    dataEnd -= handedOut;
    handedOut = 0;
    for (;;) {
        if (dataEnd == buffer.size() - PADDING)
            buffer.resize(2 * buffer.size());
        const bool isAtEnd = readMore() == 0;
        const std::size_t lineFeed = std::string_view(buffer.data(), dataEnd).rfind('\n');
        const bool hasLine = lineFeed != std::string_view::npos;
        if (!hasLine && !isAtEnd)
            continue;
        // At the end a last line without a line feed may be left; it comes alone.
        handedOut = hasLine ? lineFeed + 1 : dataEnd;
        if (!hasLine)
            std::memset(buffer.data() + dataEnd, 0, PADDING);
        begin = buffer.data();
        end = begin + handedOut;
        return handedOut > 0;
    }
}

}  // namespace obj_adapter::bench
