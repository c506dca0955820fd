// Internal: a file that is read from its beginning to its end, block by block.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace obj_adapter::platform {

// Reads in the platform's own input mode: on Windows the C runtime translates
// line ends and ends the text at a byte 0x1A, as it does for every text stream.
class InputFile {
public:
    InputFile() noexcept = default;
    ~InputFile() { close(); }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    // Opens the file, whose name is UTF-8; other processes may read and write it
    // meanwhile. False for what cannot be opened, an empty name included.
    bool open(const std::string& fileName);

    void close() noexcept;

    bool isOpen() const noexcept { return descriptor != CLOSED; }

    // Some platforms open a directory like a file and fail at the first read.
    bool isDirectory() const noexcept;

    // Bytes as they are stored; 0 for what has no size of its own, such as a pipe.
    std::uint64_t getSize() const noexcept;

    // Up to room bytes, at least one unless the file is at its end. A pipe gives
    // what stands ready. Negative when reading fails.
    std::ptrdiff_t read(char* to, std::size_t room) noexcept;

    // A read has met the end of the file.
    bool hasEnded() const noexcept { return ended; }

private:
    static constexpr int CLOSED = -1;

    int descriptor = CLOSED;
    bool ended = false;
};

}  // namespace obj_adapter::platform
