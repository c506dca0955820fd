// Internal: sorting big tables of records where they stand. Covered by
// tests/processing/compactionTest.cpp.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace obj_adapter {

// Sorts records by several keys of 64 bits, the first of which counts most.
//
// Keys    has  static constexpr int NUMBER_OF_KEYS
//              std::uint64_t getKey<KEY>(const Record&), KEY from 0
//              bool precedes(const Record&, const Record&), a strict total
//              order: of two records the preceding one has the lesser key, in
//              the first key that differs
// cost    near linear: a fixed number of passes for every eleven bits of the
//         keys, as far as it takes to tell the records apart
// memory  none but the object itself, some 20 KB; the depth of calls is bounded
//         by the number of bits in all keys together
//
// A run of records is dealt out to buckets, by the leading ones of the bits in
// which its keys differ; then each bucket is a run of its own. Small runs are
// left to std::sort.
template <typename Record, typename Keys>
class BucketSorter {
public:
    explicit BucketSorter(const Keys& recordKeys) : keys(recordKeys) {}

    // At most MAX_RECORDS records.
    void sort(Record* records, std::size_t count) { sortRun<0>(records, count); }

private:
    // Up to here comparing is faster than dealing out.
    static constexpr std::size_t SMALL_RUN = 64;

    // With more buckets the nearest caches no longer hold a line of each.
    static constexpr int MAX_BUCKET_BITS = 11;
    static constexpr std::size_t MAX_BUCKETS = std::size_t{1} << MAX_BUCKET_BITS;

    // There are about four records to a bucket.
    static constexpr int RECORDS_PER_BUCKET_BITS = 2;

    // A place in a run.
    using Place = std::uint32_t;

    // How the keys of a run fall into buckets: ascending as the keys do.
    struct Deal {
        std::uint64_t lowestKey;
        std::uint64_t highestKey;
        int shift;

        bool hasOneKey() const { return lowestKey == highestKey; }
        bool hasOneKeyPerBucket() const { return shift == 0; }
        std::size_t getNumberOfBuckets() const { return getBucket(highestKey) + 1; }
        std::size_t getBucket(std::uint64_t key) const {
            return static_cast<std::size_t>((key - lowestKey) >> shift);
        }
    };

    template <int KEY>
    void sortRun(Record* records, std::size_t count) {
        if (count <= SMALL_RUN) {
            std::sort(records, records + count,
                      [this](const Record& a, const Record& b) { return keys.precedes(a, b); });
            return;
        }
        const Deal deal = planDeal<KEY>(records, count);
        if (deal.hasOneKey()) {
            sortRunByNextKey<KEY>(records, count);
            return;
        }
        dealOut<KEY>(records, count, deal);

        for (std::size_t begin = 0, end = 0; begin < count; begin = end) {
            end = findEndOfBucket<KEY>(records, begin, count, deal);
            if (deal.hasOneKeyPerBucket())
                sortRunByNextKey<KEY>(records + begin, end - begin);
            else
                sortRun<KEY>(records + begin, end - begin);
        }
    }

    template <int KEY>
    void sortRunByNextKey(Record* records, std::size_t count) {
        if constexpr (KEY + 1 < Keys::NUMBER_OF_KEYS)
            sortRun<KEY + 1>(records, count);
    }

    template <int KEY>
    Deal planDeal(const Record* records, std::size_t count) const {
        Deal deal = {~std::uint64_t{0}, 0, 0};
        for (std::size_t place = 0; place < count; ++place) {
            const std::uint64_t key = keys.template getKey<KEY>(records[place]);
            deal.lowestKey = std::min(deal.lowestKey, key);
            deal.highestKey = std::max(deal.highestKey, key);
        }
        const int countBits = static_cast<int>(std::bit_width(count));
        const int bucketBits = std::min(countBits - RECORDS_PER_BUCKET_BITS, MAX_BUCKET_BITS);
        const int keyBits = static_cast<int>(std::bit_width(deal.highestKey - deal.lowestKey));
        deal.shift = std::max(keyBits - bucketBits, 0);
        return deal;
    }

    // Moves every record into its bucket.
    //
    // Each swap brings one record home. The one that it fetches is looked at in
    // the next round over the bucket, not at once: so no swap waits for the one
    // before it, and the fetches from memory overlap.
    template <int KEY>
    void dealOut(Record* records, std::size_t count, const Deal& deal) {
        placeBuckets<KEY>(records, count, deal);

        std::size_t unfinishedCount = deal.getNumberOfBuckets();
        for (std::size_t bucket = 0; bucket < unfinishedCount; ++bucket)
            unfinished[bucket] = static_cast<std::uint16_t>(bucket);

        while (unfinishedCount > 0) {
            std::size_t leftCount = 0;
            for (std::size_t entry = 0; entry < unfinishedCount; ++entry) {
                const std::size_t bucket = unfinished[entry];
                const Place end = ends[bucket];
                for (Place place = heads[bucket]; place < end; ++place) {
                    const std::uint64_t key = keys.template getKey<KEY>(records[place]);
                    std::swap(records[place], records[heads[deal.getBucket(key)]++]);
                }
                if (heads[bucket] < end)
                    unfinished[leftCount++] = static_cast<std::uint16_t>(bucket);
            }
            unfinishedCount = leftCount;
        }
    }

    // Sets heads and ends to where each bucket begins and ends.
    template <int KEY>
    void placeBuckets(const Record* records, std::size_t count, const Deal& deal) {
        const std::size_t numberOfBuckets = deal.getNumberOfBuckets();
        std::fill(ends, ends + numberOfBuckets, Place{0});
        for (std::size_t place = 0; place < count; ++place)
            ++ends[deal.getBucket(keys.template getKey<KEY>(records[place]))];

        Place begin = 0;
        for (std::size_t bucket = 0; bucket < numberOfBuckets; ++bucket) {
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
        const auto bucketOf = [&](std::size_t place) {
            return deal.getBucket(keys.template getKey<KEY>(records[place]));
        };
        const std::size_t bucket = bucketOf(begin);
        std::size_t end = begin + 1;
        while (end < count && bucketOf(end) == bucket)
            ++end;
        return end;
    }

    Keys keys;

    // While records are dealt out: the first place of each bucket that does not
    // hold its own yet, the place behind its last, and the buckets not done.
    Place heads[MAX_BUCKETS];
    Place ends[MAX_BUCKETS];
    std::uint16_t unfinished[MAX_BUCKETS];
};

}  // namespace obj_adapter
