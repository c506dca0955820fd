// Files by UTF-8 name. Covered by tests/platform/fileSystemTest.cpp.
#include "platform/fileSystem.h"

#include <cerrno>
#include <cstdlib>

#if defined(_WIN32)
#include <direct.h>
#include <io.h>
#include <windows.h>
#if defined(_MSC_VER)
// The C runtime calls _wfopen and _wgetenv unsafe; they are wanted all the same.
#pragma warning(disable : 4996)
#endif
#else
#include <unistd.h>
#endif

namespace obj_adapter::platform {

#if defined(_WIN32)

std::wstring toWide(const std::string& narrow) {
    if (narrow.empty())
        return {};
    // Both calls take the whole zero-terminated text and count its zero.
    const int length = MultiByteToWideChar(CP_UTF8, 0, narrow.c_str(), -1, nullptr, 0);
    if (length <= 0)
        return {};
    std::wstring wide(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, narrow.c_str(), -1, wide.data(), length);
    wide.resize(static_cast<std::size_t>(length) - 1);
    return wide;
}

std::string toNarrow(const std::wstring& wide) {
    if (wide.empty())
        return {};
    const int length =
        WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), -1, nullptr, 0, nullptr, nullptr);
    if (length <= 0)
        return {};
    std::string narrow(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.c_str(), -1, narrow.data(), length, nullptr, nullptr);
    narrow.resize(static_cast<std::size_t>(length) - 1);
    return narrow;
}

bool openForReading(std::ifstream& stream, const std::string& fileName) {
    if (fileName.empty())
        return false;
    // The C runtime opens by wide name without denying others anything.
    if (stream.rdbuf()->open(toWide(fileName).c_str(), std::ios_base::in) == nullptr) {
        stream.setstate(std::ios_base::failbit);
        return false;
    }
    stream.clear();
    return true;
}

std::FILE* fopen(const std::string& fileName, const std::string& mode) {
    return _wfopen(toWide(fileName).c_str(), toWide(mode).c_str());
}

int access(const std::string& fileName, int mode) {
    return _waccess(toWide(fileName).c_str(), mode);
}

int stat(const std::string& fileName, FileStatus* status) {
    return _wstat64i32(toWide(fileName).c_str(), status);
}

int mkdir(const std::string& directoryName) {
    return _wmkdir(toWide(directoryName).c_str());
}

int rmdir(const std::string& directoryName) {
    return _wrmdir(toWide(directoryName).c_str());
}

int remove(const std::string& fileName) {
    return _wremove(toWide(fileName).c_str());
}

int system(const std::string& command) {
    return _wsystem(toWide(command).c_str());
}

std::string getcwd(int size) {
    wchar_t* directory = _wgetcwd(nullptr, size);
    if (directory == nullptr)
        return {};
    struct Release {
        wchar_t* text;
        ~Release() { std::free(text); }
    } release{directory};
    return toNarrow(directory);
}

std::string getenv(const std::string& variableName) {
    const wchar_t* value = _wgetenv(toWide(variableName).c_str());
    return value == nullptr ? std::string() : toNarrow(value);
}

#else

bool openForReading(std::ifstream& stream, const std::string& fileName) {
    if (fileName.empty())
        return false;
    if (stream.rdbuf()->open(fileName.c_str(), std::ios_base::in) == nullptr) {
        stream.setstate(std::ios_base::failbit);
        return false;
    }
    stream.clear();
    return true;
}

std::FILE* fopen(const std::string& fileName, const std::string& mode) {
    return std::fopen(fileName.c_str(), mode.c_str());
}

int access(const std::string& fileName, int mode) {
    return ::access(fileName.c_str(), mode);
}

int stat(const std::string& fileName, FileStatus* status) {
    return ::stat(fileName.c_str(), status);
}

int mkdir(const std::string& directoryName) {
    constexpr ::mode_t EVERYTHING_BUT_THE_UMASK = 0777;
    return ::mkdir(directoryName.c_str(), EVERYTHING_BUT_THE_UMASK);
}

int rmdir(const std::string& directoryName) {
    return ::rmdir(directoryName.c_str());
}

int remove(const std::string& fileName) {
    return std::remove(fileName.c_str());
}

int system(const std::string& command) {
    return std::system(command.c_str());
}

std::string getcwd(int size) {
    // A buffer of the caller's size, or of the platform's own choice for 0.
    std::string directory(size > 0 ? static_cast<std::size_t>(size) : 4096U, '\0');
    while (::getcwd(directory.data(), directory.size()) == nullptr) {
        if (errno != ERANGE)
            return {};
        directory.resize(2 * directory.size());
    }
    directory.resize(std::char_traits<char>::length(directory.c_str()));
    return directory;
}

std::string getenv(const std::string& variableName) {
    const char* value = std::getenv(variableName.c_str());
    return value == nullptr ? std::string() : std::string(value);
}

#endif

bool isDirectory(const std::string& fileName) {
    FileStatus status;
    return platform::stat(fileName, &status) == 0 && (status.st_mode & S_IFMT) == S_IFDIR;
}

}  // namespace obj_adapter::platform
