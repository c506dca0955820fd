// A group and its names. Covered by tests/groups/groupTest.cpp.
#include <obj_adapter/group.h>

#include <cstddef>
#include <exception>
#include <type_traits>
#include <utility>

namespace obj_adapter {

// Tables of groups grow and are compacted by moving; nothing may fail halfway.
static_assert(std::is_nothrow_move_constructible_v<Group> &&
              std::is_nothrow_move_assignable_v<Group>);

namespace {

const char NAME_SEPARATOR = '_';

// The first componentCount components, which the group has.
std::string joinNames(const std::vector<std::string>& names, std::size_t componentCount) {
    std::size_t length = componentCount;
    for (std::size_t component = 0; component < componentCount; ++component)
        length += names[component].size();

    std::string joined;
    joined.reserve(length);
    for (std::size_t component = 0; component < componentCount; ++component) {
        if (component > 0)
            joined += NAME_SEPARATOR;
        joined += names[component];
    }
    return joined;
}

}  // namespace

bool Group::isCompound() const {
    return !names.empty();
}

std::string Group::getFullName() const {
    return isCompound() ? joinNames(names, names.size()) : name;
}

std::string Group::getLastName() const {
    return isCompound() ? names.back() : name;
}

std::string Group::getPrefixName(int componentCount) const {
    if (componentCount <= 0 || static_cast<std::size_t>(componentCount) > names.size())
        return {};
    return joinNames(names, static_cast<std::size_t>(componentCount));
}

void Group::setComponentName(int position, std::string componentName) {
    if (isCompound())
        names[static_cast<std::size_t>(position)] = std::move(componentName);
    else
        name = std::move(componentName);
}

std::vector<std::string> Group::getNames() const {
    return names;
}

int Group::getNumberOfFaces() const {
    return static_cast<int>(faceIndices.size());
}

void Group::addFaceIndex(int faceIndex) noexcept {
    try {
        faceIndices.push_back(faceIndex);
    } catch (const std::exception&) {
        // No memory: the list is as it was, as the header says.
    }
}

void Group::clearFaceIndices() noexcept {
    faceIndices.clear();
}

}  // namespace obj_adapter
