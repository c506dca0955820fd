// Internal: the array that the model's tables and the stages' large scratch are
// made of. Like std::vector, under the same names, with one difference: a large one
// has pages of its own (platform/growingMemory.h). Where elements are plain records it
// grows without being copied; others are moved, seldom, as a large block of those asks
// for far more addresses than it needs.
#pragma once

#include "platform/growingMemory.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <initializer_list>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace obj_adapter::platform {

template <typename Element>
class GrowingArray {
    // Carried along as bytes.
    static constexpr bool IS_PLAIN =
        std::is_trivially_copyable_v<Element> && std::is_trivially_destructible_v<Element>;

    // Growth leaves the others whole when memory runs out.
    static_assert(IS_PLAIN || std::is_nothrow_move_constructible_v<Element>);
    static_assert(alignof(Element) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

public:
    using value_type = Element;
    using iterator = Element*;
    using const_iterator = const Element*;

    GrowingArray() noexcept = default;
    explicit GrowingArray(std::size_t size) { resize(size); }
    GrowingArray(std::size_t size, const Element& value) { resize(size, value); }
    GrowingArray(std::initializer_list<Element> listed) : GrowingArray() {
        append(listed.begin(), listed.size());
    }
    GrowingArray(const GrowingArray& other) : GrowingArray() { append(other.data(), other.size()); }
    GrowingArray(GrowingArray&& other) noexcept { swap(other); }
    GrowingArray& operator=(GrowingArray other) noexcept {
        swap(other);
        return *this;
    }
    ~GrowingArray() { clear(); }

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
            Element copy = element;  // growing may move the original
            growForOneMore();
            new (elements + count) Element(std::move(copy));
        } else {
            new (elements + count) Element(element);
        }
        ++count;
    }

    // The arguments do not lie in this array.
    template <typename... Arguments>
    Element& emplace_back(Arguments&&... arguments) {
        if (count == room)
            growForOneMore();
        new (elements + count) Element(std::forward<Arguments>(arguments)...);
        ++count;
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
        cutOff(size);
    }
    void resize(std::size_t size, const Element& value) {
        const Element copy = value;
        reserve(size);
        std::uninitialized_fill(elements + std::min(count, size), elements + size, copy);
        count = std::max(count, size);
        cutOff(size);
    }

    // Like resize, but the caller writes every new element before it is read.
    void resizeUninitialized(std::size_t size) {
        static_assert(IS_PLAIN);
        reserve(size);
        count = size;
    }

    void pop_back() noexcept {
        assert(count > 0);
        cutOff(count - 1);
    }
    void clear() noexcept { cutOff(0); }

    iterator erase(iterator position) noexcept { return erase(position, position + 1); }
    iterator erase(iterator first, iterator last) noexcept {
        std::move(last, end(), first);
        cutOff(count - static_cast<std::size_t>(last - first));
        return first;
    }

    // Gives back what is not in use, as far as possible.
    void shrink_to_fit() noexcept {
        static_assert(IS_PLAIN);
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
        const std::size_t wantedBytes = wanted * sizeof(Element);
        const std::size_t likelyBytes = std::min(likely, MOST_ELEMENTS) * sizeof(Element);
        if constexpr (IS_PLAIN)
            memory.grow(count * sizeof(Element), wantedBytes, likelyBytes);
        else if (!memory.extend(wantedBytes))
            moveToLarger(wantedBytes, likelyBytes);
        adoptMemory();
    }

    void moveToLarger(std::size_t wantedBytes, std::size_t likelyBytes) {
        // Few tables outgrow so many addresses and are moved a second time.
        constexpr std::size_t ADDRESSES = std::size_t{1} << 30;
        GrowingMemory larger;
        larger.grow(
            0, wantedBytes,
            likelyBytes < SMALLEST_OWN_PAGES ? likelyBytes : std::max(likelyBytes, ADDRESSES));
        std::uninitialized_move(begin(), end(), static_cast<Element*>(larger.data()));
        std::destroy(begin(), end());
        memory.swap(larger);
    }

    void append(const Element* source, std::size_t sourceCount) {
        reserve(count + sourceCount);
        std::uninitialized_copy_n(source, sourceCount, elements + count);
        count += sourceCount;
    }

    // size is at most the number of elements.
    void cutOff(std::size_t size) noexcept {
        assert(size <= count);
        std::destroy(elements + size, elements + count);
        count = size;
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
