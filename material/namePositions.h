// Internal: names to their positions, for MaterialTable.
#pragma once

#include <algorithm>
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

// A hash table with copies of the names close together, in the order in which they
// were added: the records that they belong to are large, and a look at one of thousands
// is a wait for memory. Files mostly ask for names in the order in which they made them,
// so the one behind the last that was found is tried first.
//
// A name has one of few neighbouring slots; one that finds them all taken goes to an
// ordered map, so that a file with names made to collide costs searches of
// logarithmic length and no more.
class NamePositions {
public:
    static constexpr int NONE = -1;

    NamePositions() = default;

    // With room for fewer bytes outside the map: for tests.
    explicit NamePositions(std::size_t ownMostText) noexcept : mostText(ownMostText) {}

    // A name and its hash, for a search and what is added after it.
    struct Key {
        explicit Key(std::string_view ownName) noexcept : name(ownName), hash(hashOf(ownName)) {}

        std::string_view name;
        std::uint32_t hash;
    };

    // The position added with the name, or NONE.
    int find(std::string_view name) noexcept {
        return isEntryOf(likely, name) ? positionAt(likely) : find(Key(name));
    }
    int find(const Key& key) noexcept {
        if (slots.empty())
            return NONE;
        for (std::size_t probe = 0; probe < MAX_PROBES; ++probe) {
            const Slot& slot = slots[slotAt(slots, key.hash, probe)];
            if (slot.entry == NO_ENTRY)
                break;
            if (slot.hash == key.hash && isEntryOf(slot.entry, key.name))
                return positionAt(slot.entry);
        }
        if (overflow.empty())
            return NONE;
        const auto found = overflow.find(key.name);
        return found == overflow.end() ? NONE : found->second;
    }

    // For a name that find() does not know. Nothing changes when memory runs out.
    void add(const Key& key, int position) {
        if (slots.size() < SLOTS_PER_NAME * (count + 1))
            grow();
        Slot* const slot = findFreeSlot(slots, key.hash);
        if (slot == nullptr || !hasRoomFor(key.name))
            overflow.emplace(key.name, position);
        else
            *slot = {key.hash, addEntry(key.name, position)};
        ++count;
    }

    void clear() noexcept {
        slots.clear();
        entries.clear();
        overflow.clear();
        count = 0;
        likely = 0;
    }

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t entry = NO_ENTRY;  // where it begins in entries
    };

    // What stands before each name in entries, unaligned.
    struct Head {
        int position;
        std::uint32_t length;  // of the name
    };

    static constexpr std::size_t MAX_PROBES = 8;
    static constexpr std::size_t FEWEST_SLOTS = 16;
    static constexpr std::size_t SLOTS_PER_NAME = 2;
    static constexpr std::uint32_t NO_ENTRY = std::numeric_limits<std::uint32_t>::max();

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

    // The first free one of those that it may have; null when all are taken.
    static Slot* findFreeSlot(std::vector<Slot>& table, std::uint32_t hash) noexcept {
        for (std::size_t probe = 0; probe < MAX_PROBES; ++probe) {
            Slot& slot = table[slotAt(table, hash, probe)];
            if (slot.entry == NO_ENTRY)
                return &slot;
        }
        return nullptr;
    }

    Head headAt(std::size_t entry) const noexcept {
        Head head;
        std::memcpy(&head, entries.data() + entry, sizeof head);
        return head;
    }

    std::string_view nameAt(std::size_t entry) const noexcept {
        return std::string_view(entries).substr(entry + sizeof(Head), headAt(entry).length);
    }

    // There may be no entry. Names differ in their last byte more often than before it.
    bool isEntryOf(std::size_t entry, std::string_view name) const noexcept {
        if (entry >= entries.size() || headAt(entry).length != name.size())
            return false;
        const char* const text = entries.data() + entry + sizeof(Head);
        return name.empty() || (text[name.size() - 1] == name.back() &&
                                std::memcmp(text, name.data(), name.size()) == 0);
    }

    // Of an entry that was looked for.
    int positionAt(std::size_t entry) noexcept {
        const Head head = headAt(entry);
        likely = entry + sizeof head + head.length;
        return head.position;
    }

    bool hasRoomFor(std::string_view name) const noexcept {
        const std::size_t room = mostText - entries.size();
        return room >= sizeof(Head) && room - sizeof(Head) >= name.size();
    }

    // Where it begins.
    std::uint32_t addEntry(std::string_view name, int position) {
        const std::size_t entry = entries.size();
        const std::size_t wanted = entry + sizeof(Head) + name.size();
        if (wanted > entries.capacity())
            entries.reserve(std::max(wanted, 2 * entries.capacity()));
        const Head head{position, static_cast<std::uint32_t>(name.size())};
        entries.append(reinterpret_cast<const char*>(&head), sizeof head);
        entries.append(name);
        return static_cast<std::uint32_t>(entry);
    }

    // Doubles the slots; names in the map stay there. When memory runs out, a name may
    // stand in the map as well as in its slot.
    void grow() {
        std::vector<Slot> larger(slots.empty() ? FEWEST_SLOTS : 2 * slots.size());
        for (const Slot& slot : slots) {
            if (slot.entry == NO_ENTRY)
                continue;
            if (Slot* const place = findFreeSlot(larger, slot.hash))
                *place = slot;
            else
                overflow.emplace(nameAt(slot.entry), headAt(slot.entry).position);
        }
        slots.swap(larger);
    }

    std::vector<Slot> slots;  // a power of two, at most half of them taken
    std::string entries;      // heads and names
    std::size_t mostText = NO_ENTRY;
    std::map<std::string, int, std::less<>> overflow;
    std::size_t count = 0;
    std::size_t likely = 0;  // the entry that is tried first, or the end of all
};

}  // namespace obj_adapter
