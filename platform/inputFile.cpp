// Files read block by block. Covered by tests/platform/inputFileTest.cpp.
#include "platform/inputFile.h"

#include "platform/fileSystem.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

#if defined(_WIN32)
#include <io.h>
#if defined(_MSC_VER)
// The C runtime calls _wopen unsafe; it is wanted all the same.
#pragma warning(disable : 4996)
#endif
#else
#include <unistd.h>
#endif

namespace obj_adapter::platform {

namespace {

// What one call may read: the most that every platform's count can say.
constexpr std::size_t MAX_READ = std::size_t{1} << 30U;

#if defined(_WIN32)

int openDescriptor(const std::string& fileName) {
    return _wopen(toWide(fileName).c_str(), _O_RDONLY | _O_TEXT | _O_NOINHERIT);
}

std::ptrdiff_t readDescriptor(int descriptor, char* to, std::size_t room) noexcept {
    return _read(descriptor, to, static_cast<unsigned>(room));
}

void closeDescriptor(int descriptor) noexcept {
    _close(descriptor);
}

using DescriptorStatus = struct _stat64;

bool readStatus(int descriptor, DescriptorStatus& status) noexcept {
    return _fstat64(descriptor, &status) == 0;
}

#else

int openDescriptor(const std::string& fileName) {
    return ::open(fileName.c_str(), O_RDONLY | O_CLOEXEC);
}

std::ptrdiff_t readDescriptor(int descriptor, char* to, std::size_t room) noexcept {
    for (;;) {
        const std::ptrdiff_t length = ::read(descriptor, to, room);
        if (length >= 0 || errno != EINTR)
            return length;
    }
}

void closeDescriptor(int descriptor) noexcept {
    ::close(descriptor);
}

using DescriptorStatus = struct stat;

bool readStatus(int descriptor, DescriptorStatus& status) noexcept {
    return ::fstat(descriptor, &status) == 0;
}

#endif

}  // namespace

bool InputFile::open(const std::string& fileName) {
    close();
    if (!fileName.empty())
        descriptor = openDescriptor(fileName);
    return isOpen();
}

void InputFile::close() noexcept {
    if (isOpen())
        closeDescriptor(descriptor);
    descriptor = CLOSED;
    ended = false;
}

bool InputFile::isDirectory() const noexcept {
    DescriptorStatus status;
    return readStatus(descriptor, status) && (status.st_mode & S_IFMT) == S_IFDIR;
}

std::uint64_t InputFile::getSize() const noexcept {
    DescriptorStatus status;
    const bool isFile = readStatus(descriptor, status) && (status.st_mode & S_IFMT) == S_IFREG;
    return isFile ? static_cast<std::uint64_t>(status.st_size) : 0;
}

std::ptrdiff_t InputFile::read(char* to, std::size_t room) noexcept {
    const std::ptrdiff_t length = readDescriptor(descriptor, to, std::min(room, MAX_READ));
    ended = length == 0;
    return length;
}

}  // namespace obj_adapter::platform
