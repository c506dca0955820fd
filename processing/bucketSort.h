// Internal: sorting big tables of records. Covered by
// tests/processing/compactionTest.cpp.
#pragma once

#include "platform/prefetch.h"

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace obj_adapter {

// The least and the greatest that some keys can be.
struct KeyBounds {
    std::uint64_t lowest = 0;
    std::uint64_t highest = 0;
};

// Visits the records of a table in order of several keys of 64 bits, the first
// of which counts most. The table is left with its records in any places.
//
// Keys    has  static constexpr int NUMBER_OF_KEYS
//              std::uint64_t getKey<KEY>(const Record&), KEY from 0
//              KeyBounds getBounds(), of all first keys, not necessarily tight
//              bool precedes(const Record&, const Record&): of two records the
//              preceding one has the lesser key, in the first key that differs;
//              those with equal keys come in any order
// cost    near linear: a fixed number of passes for every twelve bits of the
//         keys, as far as it takes to tell the records apart
// memory  the constructor alone asks for any: a copy of at most MAX_COPIED
//         records, and tickets for them; the depth of calls is bounded by the
//         number of bits in all keys together
//
// A run of records is dealt out to buckets where it stands, by the leading ones
// of the bits in which its keys differ; then each bucket is a run of its own.
// Of a run that the caches hold, tickets of eight bytes are sorted instead of the
// records, and the visitor gets these from a copy: so each is moved once more and
// not once for every neighbour that it passes.
template <typename Record, typename Keys>
class BucketSorter {
public:
    // For tables of at most maxRecords.
    explicit BucketSorter(std::size_t maxRecords)
        : copies(std::min(maxRecords, MAX_COPIED)),
          tickets(copies.size()),
          spareTickets(copies.size()) {}

    // Who goes over the records anyway can spare the sort a pass: begins here, at most
    // maxRecords, and counts each that is to be sorted, by keys that stay as they are.
    void beginCounting(std::size_t maxRecords, const Keys& recordKeys) {
        keys = &recordKeys;
        countedDeal.emplace(recordKeys.getBounds(), bucketBitsFor(maxRecords));
        std::fill(ends, ends + countedDeal->getNumberOfBuckets(), Place{0});
    }
    void count(const Record& record) {
        ++ends[countedDeal->getBucket(keys->template getKey<0>(record))];
    }

    // At most MAX_RECORDS records; those counted, in any order, if any were. After n
    // visits, visit(const Record&) may have overwritten the first n places of the table.
    template <typename Visit>
    void visitInOrder(Record* records, std::size_t count, const Keys& recordKeys, Visit visit) {
        keys = &recordKeys;
        if (countedDeal && count > MAX_COPIED)
            visitDealt<0>(records, count, *countedDeal, visit);
        else
            visitRunWithin<0>(records, count, recordKeys.getBounds(), visit);
    }

private:
    // Copies and tickets are to fit the second cache. A ticket has its record's
    // place among the copies in its low bits.
    static constexpr int PLACE_BITS = 13;
    static constexpr std::size_t MAX_COPIED = std::size_t{1} << PLACE_BITS;

    // The bits above those are the leading ones of a key.
    using Ticket = std::uint64_t;
    static constexpr int TICKET_KEY_BITS = 64 - PLACE_BITS;

    // Up to here tickets are sorted by comparing their records.
    static constexpr std::size_t FEW_TICKETS = 16;

    // Up to here in each slot tickets are sorted by inserting them.
    static constexpr std::size_t FEW_IN_SLOT = 32;

    // With more buckets the second cache no longer holds a line of each and what
    // leads there.
    static constexpr int MAX_BUCKET_BITS = 12;
    static constexpr std::size_t MAX_BUCKETS = std::size_t{1} << MAX_BUCKET_BITS;

    // So far behind the record that comes home to a bucket the next ones will: far enough
    // to be there in time, near enough to be there still.
    static constexpr std::size_t BYTES_FETCHED_AHEAD = 192;

    // What a bucket may get on average, so that nearly all can be copied.
    static constexpr std::size_t BUCKET_SIZE = MAX_COPIED / 4 * 3;

    // A place in a run.
    using Place = std::uint32_t;

    // How the keys of a run fall into buckets: ascending as the keys do.
    class Deal {
    public:
        Deal(const KeyBounds& keyBounds, int bucketBits)
            : bounds(keyBounds),
              shift(std::max(
                  static_cast<int>(std::bit_width(bounds.highest - bounds.lowest)) - bucketBits,
                  0)) {}

        bool hasOneKeyPerBucket() const { return shift == 0; }
        std::size_t getNumberOfBuckets() const { return getBucket(bounds.highest) + 1; }
        std::size_t getBucket(std::uint64_t key) const {
            assert(key - bounds.lowest <= bounds.highest - bounds.lowest);
            return static_cast<std::size_t>((key - bounds.lowest) >> shift);
        }
        KeyBounds getBounds(std::size_t bucket) const {
            const std::uint64_t lowest = bounds.lowest + (std::uint64_t{bucket} << shift);
            return {lowest, lowest + ((std::uint64_t{1} << shift) - 1)};
        }

    private:
        KeyBounds bounds;
        int shift;
    };

    template <int KEY, typename Visit>
    // NOLINTNEXTLINE(misc-no-recursion): at most as deep as the keys have bits
    void visitRun(Record* records, std::size_t count, Visit& visit) {
        const KeyBounds bounds = findBounds<KEY>(
            count, [&](std::size_t place) -> const Record& { return records[place]; });
        visitRunWithin<KEY>(records, count, bounds, visit);
    }

    template <int KEY, typename Visit>
    // NOLINTNEXTLINE(misc-no-recursion): at most as deep as the keys have bits
    void visitRunWithin(Record* records, std::size_t count, const KeyBounds& bounds, Visit& visit) {
        if (bounds.lowest == bounds.highest) {
            visitRunByNextKey<KEY>(records, count, visit);
            return;
        }
        if (count <= MAX_COPIED) {
            visitCopies<KEY>(records, count, bounds, visit);
            return;
        }
        const Deal deal(bounds, bucketBitsFor(count));
        countByBucket<KEY>(records, count, deal);
        visitDealt<KEY>(records, count, deal, visit);
    }

    // Deals the records out, which are counted already, and visits bucket by bucket.
    template <int KEY, typename Visit>
    // NOLINTNEXTLINE(misc-no-recursion): at most as deep as the keys have bits
    void visitDealt(Record* records, std::size_t count, const Deal& deal, Visit& visit) {
        dealOut<KEY>(records, deal);
        for (std::size_t begin = 0, end = 0; begin < count; begin = end) {
            end = findEndOfBucket<KEY>(records, begin, count, deal);
            Record* const bucket = records + begin;
            if (deal.hasOneKeyPerBucket()) {
                visitRunByNextKey<KEY>(bucket, end - begin, visit);
            } else if (end - begin <= MAX_COPIED) {
                const std::uint64_t key = keys->template getKey<KEY>(*bucket);
                visitCopies<KEY>(bucket, end - begin, deal.getBounds(deal.getBucket(key)), visit);
            } else {
                visitRun<KEY>(bucket, end - begin, visit);
            }
        }
    }

    template <int KEY, typename Visit>
    void visitRunByNextKey(Record* records, std::size_t count, Visit& visit) {
        if constexpr (KEY + 1 < Keys::NUMBER_OF_KEYS)
            visitRun<KEY + 1>(records, count, visit);
        else
            std::for_each_n(records, count, visit);
    }

    template <int KEY, typename RecordAt>
    KeyBounds findBounds(std::size_t count, const RecordAt& recordAt) const {
        KeyBounds bounds = {std::numeric_limits<std::uint64_t>::max(), 0};
        for (std::size_t place = 0; place < count; ++place) {
            const std::uint64_t key = keys->template getKey<KEY>(recordAt(place));
            bounds.lowest = std::min(bounds.lowest, key);
            bounds.highest = std::max(bounds.highest, key);
        }
        return bounds;
    }

    // --- Runs that are dealt out

    // Moves every record into its bucket.
    //
    // Each swap brings one record home. The one that it fetches is looked at in
    // the next round over the bucket, not at once: so no swap waits for the one
    // before it, and the fetches from memory overlap.
    template <int KEY>
    void dealOut(Record* records, const Deal& deal) {
        placeBuckets(deal);

        std::size_t unfinishedCount = deal.getNumberOfBuckets();
        for (std::size_t bucket = 0; bucket < unfinishedCount; ++bucket)
            unfinished[bucket] = static_cast<std::uint16_t>(bucket);

        while (unfinishedCount > 0) {
            std::size_t leftCount = 0;
            for (std::size_t entry = 0; entry < unfinishedCount; ++entry) {
                const std::size_t bucket = unfinished[entry];
                const Place end = ends[bucket];
                for (Place place = heads[bucket]; place < end; ++place) {
                    const std::uint64_t key = keys->template getKey<KEY>(records[place]);
                    Record* const home = records + heads[deal.getBucket(key)]++;
                    platform::prefetchBehind(home, BYTES_FETCHED_AHEAD);
                    if (home != records + place)  // what is home already need not be written
                        std::swap(records[place], *home);
                }
                if (heads[bucket] < end)
                    unfinished[leftCount++] = static_cast<std::uint16_t>(bucket);
            }
            unfinishedCount = leftCount;
        }
    }

    static int bucketBitsFor(std::size_t count) {
        return std::min(static_cast<int>(std::bit_width(count / BUCKET_SIZE)), MAX_BUCKET_BITS);
    }

    // Sets each entry of ends to the number of records that the bucket gets.
    template <int KEY>
    void countByBucket(const Record* records, std::size_t count, const Deal& deal) {
        std::fill(ends, ends + deal.getNumberOfBuckets(), Place{0});
        for (std::size_t place = 0; place < count; ++place)
            ++ends[deal.getBucket(keys->template getKey<KEY>(records[place]))];
    }

    // Sets heads and ends to where each bucket begins and ends; ends has the counts.
    void placeBuckets(const Deal& deal) {
        Place begin = 0;
        for (std::size_t bucket = 0; bucket < deal.getNumberOfBuckets(); ++bucket) {
            heads[bucket] = begin;
            begin += ends[bucket];
            ends[bucket] = begin;
        }
    }

    // Reads the end off the records, so that no level of calls has to keep a
    // list of ends while deeper ones run.
    template <int KEY>
    std::size_t findEndOfBucket(const Record* records, std::size_t begin, std::size_t count,
                                const Deal& deal) const {
        const auto bucketOf = [&](const Record& record) {
            return deal.getBucket(keys->template getKey<KEY>(record));
        };
        const std::size_t bucket = bucketOf(records[begin]);
        const auto isInBucket = [&](const Record& record) { return bucketOf(record) == bucket; };
        // Most buckets are small.
        const Record* const likelyEnd = records + std::min(begin + MAX_COPIED, count);
        const Record* const end =
            isInBucket(likelyEnd[-1])
                ? std::partition_point(likelyEnd, records + count, isInBucket)
                : std::partition_point(records + begin, likelyEnd, isInBucket);
        return static_cast<std::size_t>(end - records);
    }

    // --- Runs that are copied

    template <int KEY, typename Visit>
    void visitCopies(const Record* records, std::size_t count, const KeyBounds& bounds,
                     Visit& visit) {
        sortTicketsWithin<KEY>(tickets.data(), count, bounds, [&](std::size_t place) {
            copies[place] = records[place];
            return place;
        });
        for (std::size_t place = 0; place < count; ++place) {
            // The next run is needed soon.
            platform::prefetchBehind(records + place, count * sizeof(Record));
            visit(recordOf(tickets[place]));
        }
    }

    static std::uint64_t placeOf(Ticket ticket) { return ticket & (MAX_COPIED - 1); }
    static std::uint64_t keyBitsOf(Ticket ticket) { return ticket >> PLACE_BITS; }
    const Record& recordOf(Ticket ticket) const { return copies[placeOf(ticket)]; }

    // The tickets of records that all preceding keys call equal.
    template <int KEY>
    // NOLINTNEXTLINE(misc-no-recursion): at most as deep as the keys have bits
    void sortTickets(Ticket* run, std::size_t count) {
        if (count <= FEW_TICKETS) {
            const auto precedes = [this](Ticket a, Ticket b) {
                return keys->precedes(recordOf(a), recordOf(b));
            };
            if (!std::is_sorted(run, run + count, precedes))  // as records with equal keys are
                std::sort(run, run + count, precedes);
            return;
        }
        const KeyBounds bounds = findBounds<KEY>(
            count, [&](std::size_t place) -> const Record& { return recordOf(run[place]); });
        if (bounds.lowest == bounds.highest)
            sortTicketsByNextKey<KEY>(run, count);
        else
            sortTicketsWithin<KEY>(run, count, bounds,
                                   [run](std::size_t place) { return placeOf(run[place]); });
    }

    template <int KEY, typename PlaceAt>
    // NOLINTNEXTLINE(misc-no-recursion): at most as deep as the keys have bits
    void sortTicketsWithin(Ticket* run, std::size_t count, const KeyBounds& bounds,
                           const PlaceAt& placeAt) {
        const Deal deal(bounds, TICKET_KEY_BITS);
        sortTicketsByBits<KEY>(run, count, deal, placeAt);
        for (std::size_t begin = 0, end = 0; begin < count; begin = end) {
            end = begin + 1;
            while (end < count && keyBitsOf(run[end]) == keyBitsOf(run[begin]))
                ++end;
            if (end - begin == 1)
                continue;
            if (deal.hasOneKeyPerBucket())
                sortTicketsByNextKey<KEY>(run + begin, end - begin);
            else
                sortTickets<KEY>(run + begin, end - begin);
        }
    }

    template <int KEY>
    void sortTicketsByNextKey(Ticket* run, std::size_t count) {
        if constexpr (KEY + 1 < Keys::NUMBER_OF_KEYS)
            sortTickets<KEY + 1>(run, count);
    }

    // Writes the leading bits of the key into each ticket, with what placeAt(0), (1) and so
    // on say, and sorts the tickets as numbers: spreads them over about as many slots and sorts
    // those that meet in one.
    template <int KEY, typename PlaceAt>
    void sortTicketsByBits(Ticket* run, std::size_t count, const Deal& deal,
                           const PlaceAt& placeAt) {
        const int slotBits = std::min(static_cast<int>(std::bit_width(count)), PLACE_BITS);
        const int keyBits = static_cast<int>(std::bit_width(deal.getNumberOfBuckets() - 1));
        const int shift = std::max(keyBits - slotBits, 0) + PLACE_BITS;
        const std::size_t numberOfSlots = std::size_t{1} << slotBits;

        std::fill_n(slotPlaces, numberOfSlots, std::uint16_t{0});
        for (std::size_t place = 0; place < count; ++place) {
            const std::uint64_t placeOfCopy = placeAt(place);
            const std::uint64_t key = keys->template getKey<KEY>(copies[placeOfCopy]);
            const Ticket ticket = Ticket{deal.getBucket(key)} << PLACE_BITS | placeOfCopy;
            spareTickets[place] = ticket;
            ++slotPlaces[ticket >> shift];
        }
        std::uint16_t end = 0;
        std::uint16_t mostInSlot = 0;
        for (std::size_t slot = 0; slot < numberOfSlots; ++slot) {
            mostInSlot = std::max(mostInSlot, slotPlaces[slot]);
            end = static_cast<std::uint16_t>(end + slotPlaces[slot]);
            slotPlaces[slot] = end;
        }
        for (std::size_t place = count; place-- > 0;) {
            const Ticket ticket = spareTickets[place];
            run[--slotPlaces[ticket >> shift]] = ticket;
        }
        if (mostInSlot <= FEW_IN_SLOT)
            insertTickets(run, count);
        else
            sortSlots(run, count, numberOfSlots);
    }

    // Tickets that are near their places, as all are in the right one of many slots.
    static void insertTickets(Ticket* run, std::size_t count) {
        Ticket greatest = run[0];
        for (std::size_t place = 1; place < count; ++place) {
            const Ticket ticket = run[place];
            if (ticket >= greatest) {
                greatest = ticket;
                continue;
            }
            std::size_t hole = place;
            do {
                run[hole] = run[hole - 1];
                --hole;
            } while (hole > 0 && run[hole - 1] > ticket);
            run[hole] = ticket;
        }
    }

    // Tickets with equal keys are in order as they come, so that a slot full of
    // those needs no sorting.
    void sortSlots(Ticket* run, std::size_t count, std::size_t numberOfSlots) {
        for (std::size_t slot = 0; slot < numberOfSlots; ++slot) {
            Ticket* const begin = run + slotPlaces[slot];
            Ticket* const end = run + (slot + 1 < numberOfSlots ? slotPlaces[slot + 1] : count);
            if (!std::is_sorted(begin, end))
                std::sort(begin, end);
        }
    }

    const Keys* keys = nullptr;
    std::optional<Deal> countedDeal;

    // While records are dealt out: the first place of each bucket that does not
    // hold its own yet, the place behind its last, and the buckets not done.
    Place heads[MAX_BUCKETS];
    Place ends[MAX_BUCKETS];
    std::uint16_t unfinished[MAX_BUCKETS];

    // While a run is copied.
    std::vector<Record> copies;
    std::vector<Ticket> tickets;
    std::vector<Ticket> spareTickets;
    std::uint16_t slotPlaces[MAX_COPIED];
};

}  // namespace obj_adapter
