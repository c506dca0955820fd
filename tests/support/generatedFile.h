// OBJ files made from a seed, for comparing builds on more than samples.
#pragma once

#include <string>

namespace obj_adapter::test {

struct GeneratedFile {
    std::string objText;
    std::string mtlText;  // the library that objText names "generated.mtl"
};

// The same file for the same seed on every platform. It has statements of every
// kind, polygons, numbers of every size and form, and some lines that are bad.
GeneratedFile generateFile(unsigned seed);

}  // namespace obj_adapter::test
