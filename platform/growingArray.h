// Internal: the array that the model's tables and the stages' large scratch are
// made of. Like std::vector, under the same names, with two differences: a large
// one grows without being copied (platform/growingMemory.h), and elements are
// plain records, carried along as bytes.
#pragma once

#include "platform/growingMemory.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace obj_adapter::platform {

template <typename Element>
class GrowingArray {
    static_assert(std::is_trivially_copyable_v<Element> &&
                  std::is_trivially_destructible_v<Element>);
    static_assert(alignof(Element) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

public:
    using value_type = Element;
    using iterator = Element*;
    using const_iterator = const Element*;

    GrowingArray() noexcept = default;
    explicit GrowingArray(std::size_t size) { resize(size); }
    GrowingArray(std::size_t size, const Element& value) { resize(size, value); }
    GrowingArray(const GrowingArray& other) { append(other.data(), other.size()); }
    GrowingArray(GrowingArray&& other) noexcept { swap(other); }
    GrowingArray& operator=(GrowingArray other) noexcept {
        swap(other);
        return *this;
    }
    ~GrowingArray() = default;

    std::size_t size() const noexcept { return count; }
    bool empty() const noexcept { return count == 0; }
    std::size_t capacity() const noexcept { return room; }

    Element* data() noexcept { return elements; }
    const Element* data() const noexcept { return elements; }
    iterator begin() noexcept { return elements; }
    iterator end() noexcept { return elements + count; }
    const_iterator begin() const noexcept { return elements; }
    const_iterator end() const noexcept { return elements + count; }

    Element& operator[](std::size_t position) noexcept {
        assert(position < count);
        return elements[position];
    }
    const Element& operator[](std::size_t position) const noexcept {
        assert(position < count);
        return elements[position];
    }
    // std::out_of_range where there is no such element.
    Element& at(std::size_t position) {
        requirePosition(position);
        return elements[position];
    }
    const Element& at(std::size_t position) const {
        requirePosition(position);
        return elements[position];
    }
    Element& front() noexcept { return (*this)[0]; }
    const Element& front() const noexcept { return (*this)[0]; }
    Element& back() noexcept { return (*this)[count - 1]; }
    const Element& back() const noexcept { return (*this)[count - 1]; }

    // Whatever raises here, std::bad_alloc or std::length_error, leaves the array
    // as it was.

    // The element may lie in this array.
    void push_back(const Element& element) {
        if (count == room) {
            const Element copy = element;  // growing may move the original
            growForOneMore();
            new (elements + count) Element(copy);
        } else {
            new (elements + count) Element(element);
        }
        ++count;
    }

    template <typename... Arguments>
    Element& emplace_back(Arguments&&... arguments) {
        push_back(Element(std::forward<Arguments>(arguments)...));
        return back();
    }

    void reserve(std::size_t wanted) {
        if (wanted > room)
            grow(wanted, wanted);
    }

    // New elements are made by their default constructor, or copies of value.
    void resize(std::size_t size) {
        reserve(size);
        for (; count < size; ++count)
            new (elements + count) Element();
        count = size;
    }
    void resize(std::size_t size, const Element& value) {
        const Element copy = value;
        reserve(size);
        std::uninitialized_fill(elements + std::min(count, size), elements + size, copy);
        count = size;
    }

    // Like resize, but the caller writes every new element before it is read.
    void resizeUninitialized(std::size_t size) {
        reserve(size);
        count = size;
    }

    void pop_back() noexcept {
        assert(count > 0);
        --count;
    }
    void clear() noexcept { count = 0; }

    iterator erase(iterator position) noexcept { return erase(position, position + 1); }
    iterator erase(iterator first, iterator last) noexcept {
        std::copy(last, end(), first);
        count -= static_cast<std::size_t>(last - first);
        return first;
    }

    // Gives back what is not in use, as far as possible.
    void shrink_to_fit() noexcept {
        memory.shrink(count * sizeof(Element));
        adoptMemory();
    }

    void swap(GrowingArray& other) noexcept {
        memory.swap(other.memory);
        std::swap(elements, other.elements);
        std::swap(count, other.count);
        std::swap(room, other.room);
    }

private:
    static constexpr std::size_t MOST_ELEMENTS =
        std::numeric_limits<std::size_t>::max() / 4 / sizeof(Element);

    void requirePosition(std::size_t position) const {
        if (position >= count)
            throw std::out_of_range("No such element");
    }

    // Apart from push_back, which is to stay small.
    void growForOneMore() {
        constexpr std::size_t FIRST_ROOM = 4;
        grow(count + 1, std::max(FIRST_ROOM, 2 * count));
    }

    void grow(std::size_t wanted, std::size_t likely) {
        if (wanted > MOST_ELEMENTS)
            throw std::length_error("Array too long");
        memory.grow(count * sizeof(Element), wanted * sizeof(Element),
                    std::min(likely, MOST_ELEMENTS) * sizeof(Element));
        adoptMemory();
    }

    void append(const Element* source, std::size_t sourceCount) {
        reserve(count + sourceCount);
        if (sourceCount > 0)
            std::memcpy(static_cast<void*>(elements + count), source,
                        sourceCount * sizeof(Element));
        count += sourceCount;
    }

    void adoptMemory() noexcept {
        elements = static_cast<Element*>(memory.data());
        room = memory.capacity() / sizeof(Element);
    }

    Element* elements = nullptr;
    std::size_t count = 0;
    std::size_t room = 0;
    GrowingMemory memory;
};

}  // namespace obj_adapter::platform
