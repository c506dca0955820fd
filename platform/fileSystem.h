// Internal: files by UTF-8 name, on every platform.
//
// Windows takes UTF-16 names: each function converts its texts and calls the
// wide-character function of the C runtime. Elsewhere names are bytes already,
// and each is the narrow function itself. Nothing here throws but
// std::bad_alloc; failures are those of the platform's function.
#pragma once

#include <cstdio>
#include <fstream>
#include <string>

#include <sys/stat.h>
#include <sys/types.h>

namespace obj_adapter::platform {

#if defined(_WIN32)
using FileStatus = struct _stat64i32;

// Invalid sequences are not rejected; the system substitutes them.
std::wstring toWide(const std::string& narrow);
std::string toNarrow(const std::wstring& wide);
#else
using FileStatus = struct stat;
#endif

// Opens the stream in input mode; other processes may read and write the file
// meanwhile. False, without any call, for an empty name. Clears the stream's
// state on success and sets it to failed on failure.
bool openForReading(std::ifstream& stream, const std::string& fileName);

std::FILE* fopen(const std::string& fileName, const std::string& mode);
int access(const std::string& fileName, int mode);
int stat(const std::string& fileName, FileStatus* status);
int mkdir(const std::string& directoryName);
int rmdir(const std::string& directoryName);
int remove(const std::string& fileName);
int system(const std::string& command);

// The current directory; empty when the platform cannot tell.
std::string getcwd(int size);

// Empty when the variable is not set.
std::string getenv(const std::string& variableName);

// False also for what does not exist.
bool isDirectory(const std::string& fileName);

}  // namespace obj_adapter::platform
