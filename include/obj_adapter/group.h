// A group of faces, made by a g or o statement of the file.
#pragma once

#include <obj_adapter/export.h>

#include <string>
#include <vector>

namespace obj_adapter {

// A group with one name ("g wheel") is simple; with two or more ("g car left
// wheel") it is compound, and its names are read as a path.
//
// The converter owns its groups; getGroup lends a pointer. Names are the bytes
// of the file, without any conversion.
struct Group {
    std::vector<std::string> names;  // components in the file's order; empty if simple
    std::string name;                // the simple name, or "COMPOUND_GROUP"
    std::vector<int> faceIndices;    // positions in the face table, in joining order

    // True exactly when names is not empty.
    OBJ_ADAPTER_API bool isCompound() const;

    // "car_left_wheel": the components joined by "_", or the simple name.
    OBJ_ADAPTER_API std::string getFullName() const;

    // "wheel": the last component, or the simple name.
    OBJ_ADAPTER_API std::string getLastName() const;

    // The first componentCount components joined by "_". Empty for 0, for less
    // than 0 and for more than there are; a simple group has none.
    OBJ_ADAPTER_API std::string getPrefixName(int componentCount) const;

    // Replaces a component, or the name of a simple group whatever the position.
    // The position of a component is not checked.
    OBJ_ADAPTER_API void setComponentName(int position, std::string componentName);

    // A copy of the components. Throws only std::bad_alloc, as the functions do
    // that return a string.
    OBJ_ADAPTER_API std::vector<std::string> getNames() const;

    OBJ_ADAPTER_API int getNumberOfFaces() const;

    // These change the list alone, not the face's own groupIndex. Without memory
    // for one more, the list stays as it is.
    OBJ_ADAPTER_API void addFaceIndex(int faceIndex) noexcept;
    OBJ_ADAPTER_API void clearFaceIndices() noexcept;
};

}  // namespace obj_adapter
