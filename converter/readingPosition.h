// Internal: which line of which file is being read, for hosts that ask inside a
// callback (ObjConverter::getCurrentFileName, getCurrentLineNumber).
#pragma once

#include <string>

namespace obj_adapter {

class LogicalLineReader;

// While it lives, a file is read. A library within an OBJ file stands before it.
class ReadingPosition {
public:
    ReadingPosition(const std::string& ownFileName, const LogicalLineReader& ownLines) noexcept
        : fileName(ownFileName), lines(ownLines), outer(innermost) {
        innermost = this;
    }
    ~ReadingPosition() { innermost = outer; }
    ReadingPosition(const ReadingPosition&) = delete;
    ReadingPosition& operator=(const ReadingPosition&) = delete;

    // Null when no file is read.
    static const ReadingPosition* getInnermost() noexcept { return innermost; }

    const std::string& getFileName() const noexcept { return fileName; }
    const LogicalLineReader& getLines() const noexcept { return lines; }

private:
    static inline const ReadingPosition* innermost = nullptr;

    const std::string& fileName;
    const LogicalLineReader& lines;
    const ReadingPosition* outer;
};

}  // namespace obj_adapter
