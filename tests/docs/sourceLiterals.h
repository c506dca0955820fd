// The string literals of C++ files, for comparing pages with the sources.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace obj_adapter::test {

struct Literal {
    std::string place;    // "folder/file.cpp:12"
    std::string value;    // escapes resolved, adjacent literals joined
    std::string context;  // the code of its statement in front of it, without comments
};

// Those of one file, but for preprocessor lines. Knows line and block comments,
// character literals and plain string literals; no raw ones.
std::vector<Literal> readLiterals(const std::filesystem::path& file, const std::string& shownName);

// Those of all .h and .cpp files below the library's folders, in order of names.
std::vector<Literal> readLibraryLiterals(const std::filesystem::path& sourceRoot);

}  // namespace obj_adapter::test
