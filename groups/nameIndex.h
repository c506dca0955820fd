// Internal: the names registered while the tree of groups is built. Hosts see
// the tree through ObjConverter::getRootOfHierarchy.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <deque>
#include <string_view>

namespace obj_adapter {

struct ObjHierarchyNode;

// A map from names to nodes that never copies a name, for names that are mostly
// beginnings of each other: "car", "car_left", "car_left_wheel".
//
// A tree of places, each at the end of a text that begins with the texts of all
// places above. Going on from a place costs the bytes that are added, however
// many stand before them: a group's path is walked, or made, in time linear in
// its length, and by comparing bytes alone.
//
// The texts must outlive the index.
class NameIndex {
public:
    // The end of a text. Stays that as long as the index lives.
    struct Place {
        ObjHierarchyNode* node = nullptr;  // registered under this text; null if none is

    private:
        friend class NameIndex;

        std::string_view addition;  // what this place adds to the one above
        Place* firstBelow = nullptr;
        std::array<Place*, 2> beside{};  // further places below the same one
    };

    NameIndex() = default;
    NameIndex(const NameIndex&) = delete;
    NameIndex& operator=(const NameIndex&) = delete;

    // The place of the empty text.
    Place& getStart() noexcept { return start; }

    // The node registered under the text, or null.
    ObjHierarchyNode* find(std::string_view text) noexcept {
        Place* place = &start;
        while (!text.empty()) {
            place = linkBelow(*place, text.front());
            if (place == nullptr || !text.starts_with(place->addition))
                return nullptr;
            text.remove_prefix(place->addition.size());
        }
        return place->node;
    }

    // The place of from's text with text behind it, made on first need.
    Place& reach(Place& from, std::string_view text) {
        Place* place = &from;
        while (!text.empty()) {
            Place*& link = linkBelow(*place, text.front());
            if (link == nullptr) {
                link = &places.emplace_back();
                link->addition = text;
                return *link;
            }
            const std::size_t common = commonLength(link->addition, text);
            if (common < link->addition.size())
                insertAbove(link, common);
            place = link;
            text.remove_prefix(common);
        }
        return *place;
    }

private:
    // The link to the place below whose addition begins with that byte, or the
    // empty link where it belongs. Places below the same one begin with
    // different bytes and hang beside each other by the bits of these, so that
    // none is more than one step for each bit away.
    static Place*& linkBelow(Place& above, char firstByte) noexcept {
        Place** link = &above.firstBelow;
        for (unsigned bits = static_cast<unsigned char>(firstByte);
             *link != nullptr && (*link)->addition.front() != firstByte; bits >>= 1U)
            link = &(*link)->beside[bits & 1U];
        return *link;
    }

    static std::size_t commonLength(std::string_view a, std::string_view b) noexcept {
        return static_cast<std::size_t>(
            std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
    }

    // Parts the addition of the place that the link leads to: the first length
    // bytes become a place of their own, which takes over the link.
    void insertAbove(Place*& link, std::size_t length) {
        Place& lower = *link;
        Place& upper = places.emplace_back();
        upper.addition = lower.addition.substr(0, length);
        upper.firstBelow = &lower;
        upper.beside = lower.beside;
        lower.addition.remove_prefix(length);
        lower.beside = {};
        link = &upper;
    }

    Place start;
    std::deque<Place> places;
};

}  // namespace obj_adapter
