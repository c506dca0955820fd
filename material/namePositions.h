// Internal: names to their positions, for MaterialTable.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace obj_adapter {

// A hash table with copies of the names close together: the records that they belong
// to are large, and a look at one of thousands is a wait for memory.
//
// A name has one of few neighbouring slots; one that finds them all taken goes to an
// ordered map, so that a file with names made to collide costs searches of
// logarithmic length and no more.
class NamePositions {
public:
    static constexpr int NONE = -1;

    NamePositions() = default;

    // With room for fewer bytes of names outside the map: for tests.
    explicit NamePositions(std::size_t ownMostText) noexcept : mostText(ownMostText) {}

    // The position added with the name, or NONE.
    int find(std::string_view name) const noexcept {
        if (slots.empty())
            return NONE;
        const std::uint32_t hash = hashOf(name);
        for (std::size_t probe = 0; probe < MAX_PROBES; ++probe) {
            const Slot& slot = slots[slotAt(slots, hash, probe)];
            if (slot.position == NONE)
                break;
            if (slot.hash == hash && slot.length == name.size() &&
                std::memcmp(texts.data() + slot.begin, name.data(), name.size()) == 0)
                return slot.position;
        }
        const auto found = overflow.find(name);
        return found == overflow.end() ? NONE : found->second;
    }

    // For a name that find() does not know. Nothing changes when memory runs out.
    void add(std::string_view name, int position) {
        if (slots.size() < SLOTS_PER_NAME * (count + 1))
            grow();
        if (name.size() > mostText - texts.size()) {
            overflow.emplace(name, position);
            return;
        }
        texts.append(name);
        const Slot slot{hashOf(name), position,
                        static_cast<std::uint32_t>(texts.size() - name.size()),
                        static_cast<std::uint32_t>(name.size())};
        if (!put(slots, slot))
            moveToOverflow(slot);
        ++count;
    }

    void clear() noexcept {
        slots.clear();
        texts.clear();
        overflow.clear();
        count = 0;
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        int position = NONE;
        std::uint32_t begin = 0;  // of the name in texts
        std::uint32_t length = 0;
    };

    static constexpr std::size_t MAX_PROBES = 8;
    static constexpr std::size_t FEWEST_SLOTS = 16;
    static constexpr std::size_t SLOTS_PER_NAME = 2;
    static constexpr std::size_t MAX_TEXT = std::numeric_limits<std::uint32_t>::max();

    // Eight bytes at a time. Which value comes out, on which machine, decides nothing
    // but the time that a search takes.
    static std::uint32_t hashOf(std::string_view name) noexcept {
        constexpr std::uint64_t ODD_FACTOR = 0x9E3779B97F4A7C15U;  // 2^64 / golden ratio
        constexpr int HALF = 32;
        std::uint64_t hash = name.size() * ODD_FACTOR;
        while (!name.empty()) {
            std::uint64_t piece = 0;
            const std::size_t length = name.size() < sizeof piece ? name.size() : sizeof piece;
            std::memcpy(&piece, name.data(), length);
            hash = (std::rotl(hash, HALF) ^ piece) * ODD_FACTOR;
            name.remove_prefix(length);
        }
        return static_cast<std::uint32_t>(hash >> HALF);
    }

    static std::size_t slotAt(const std::vector<Slot>& table, std::uint32_t hash,
                              std::size_t probe) noexcept {
        return (hash + probe) & (table.size() - 1);
    }

    // False when all slots that it may have are taken.
    static bool put(std::vector<Slot>& table, const Slot& taken) noexcept {
        for (std::size_t probe = 0; probe < MAX_PROBES; ++probe) {
            Slot& slot = table[slotAt(table, taken.hash, probe)];
            if (slot.position == NONE) {
                slot = taken;
                return true;
            }
        }
        return false;
    }

    void moveToOverflow(const Slot& slot) {
        overflow.emplace(std::string_view(texts).substr(slot.begin, slot.length), slot.position);
    }

    // Doubles the slots; names in the map stay there. When memory runs out, a name may
    // stand in the map as well as in its slot.
    void grow() {
        std::vector<Slot> larger(slots.empty() ? FEWEST_SLOTS : 2 * slots.size());
        for (const Slot& slot : slots) {
            if (slot.position != NONE && !put(larger, slot))
                moveToOverflow(slot);
        }
        slots.swap(larger);
    }

    std::vector<Slot> slots;  // a power of two, at most half of them taken
    std::string texts;
    std::size_t mostText = MAX_TEXT;
    std::map<std::string, int, std::less<>> overflow;
    std::size_t count = 0;
};

}  // namespace obj_adapter
