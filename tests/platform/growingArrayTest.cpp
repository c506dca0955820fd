// Arrays that grow without being copied: on the heap, on pages of their own, and
// across the border between the two.
#include "platform/growingArray.h"

#include "support/countedMemory.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace obj_adapter::test {

namespace {

using platform::GrowingArray;
using platform::SMALLEST_OWN_PAGES;

// As large as a face, which is no power of two.
struct Record {
    std::array<std::int32_t, 15> values{};

    explicit Record(std::int32_t value = 0) noexcept { values.fill(value); }
    friend bool operator==(const Record& a, const Record& b) noexcept {
        return a.values == b.values;
    }
};

using Records = GrowingArray<Record>;

constexpr std::size_t SMALLEST_ON_PAGES = SMALLEST_OWN_PAGES / sizeof(Record) + 1;

void appendNumbered(Records& records, std::size_t wantedSize) {
    while (records.size() < wantedSize)
        records.push_back(Record(static_cast<std::int32_t>(records.size())));
}

// The first position whose record is not the one that appendNumbered puts there.
std::size_t firstSpoilt(const Records& records) {
    std::size_t position = 0;
    while (position < records.size() &&
           records[position] == Record(static_cast<std::int32_t>(position)))
        ++position;
    return position;
}

// Each test runs on the heap alone and with pages.
class GrowingArrays : public testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        if (GetParam())
            pages = std::make_unique<PagesAllowed>();
    }

    std::unique_ptr<PagesAllowed> pages;
};

INSTANTIATE_TEST_SUITE_P(Memory, GrowingArrays, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& test) {
                             return std::string(test.param ? "pages" : "heap");
                         });

TEST_P(GrowingArrays, beginEmptyWithoutMemory) {
    const Records records;
    EXPECT_EQ(records.size(), 0U);
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(records.capacity(), 0U);
    EXPECT_EQ(records.data(), nullptr);
    EXPECT_EQ(records.begin(), records.end());
}

TEST_P(GrowingArrays, keepWhatIsAppendedAcrossEveryGrowth) {
    Records records;
    // Beyond the first range of addresses on Linux, 16 MB.
    appendNumbered(records, 64 * SMALLEST_ON_PAGES);
    EXPECT_EQ(records.size(), 64 * SMALLEST_ON_PAGES);
    EXPECT_EQ(firstSpoilt(records), records.size());
}

TEST_P(GrowingArrays, growSeldom) {
    Records records;
    const std::size_t allocations = getNumberOfAllocations();
    appendNumbered(records, 64 * SMALLEST_ON_PAGES);
    EXPECT_LE(getNumberOfAllocations() - allocations, 40U);
}

TEST_P(GrowingArrays, appendElementsOfTheirOwn) {
    Records records;
    records.push_back(Record(7));
    for (std::size_t size = 1; size < 2 * SMALLEST_ON_PAGES; ++size)
        records.push_back(records[size / 2]);
    for (const Record& record : records)
        ASSERT_EQ(record, Record(7));
}

TEST_P(GrowingArrays, emplaceGivesTheNewElement) {
    Records records;
    Record& added = records.emplace_back(5);
    EXPECT_EQ(&added, records.data());
    EXPECT_EQ(records.back(), Record(5));
    EXPECT_EQ(records.front(), Record(5));
}

TEST_P(GrowingArrays, reserveMakesRoomOnce) {
    for (const std::size_t wanted : {std::size_t{1}, std::size_t{100}, 3 * SMALLEST_ON_PAGES}) {
        Records records;
        records.push_back(Record(0));
        records.reserve(wanted);
        EXPECT_GE(records.capacity(), wanted);
        const Record* place = records.data();
        appendNumbered(records, wanted);
        EXPECT_EQ(records.data(), place) << wanted;
        EXPECT_EQ(firstSpoilt(records), wanted);
    }
}

TEST_P(GrowingArrays, resizeMakesNewElementsByDefaultOrAsGiven) {
    for (const std::size_t size : {std::size_t{3}, 2 * SMALLEST_ON_PAGES}) {
        Records records;
        records.push_back(Record(4));
        records.resize(size);
        ASSERT_EQ(records.size(), size);
        EXPECT_EQ(records[0], Record(4));
        for (std::size_t position = 1; position < size; ++position)
            ASSERT_EQ(records[position], Record(0));
        records.resize(1);
        EXPECT_EQ(records.size(), 1U);
        records.resize(size, records[0]);
        for (const Record& record : records)
            ASSERT_EQ(record, Record(4));
        records.resize(2, Record(9));
        EXPECT_EQ(records.size(), 2U);
        EXPECT_EQ(records[1], Record(4));
    }
}

TEST_P(GrowingArrays, eraseClosesTheGap) {
    Records records;
    appendNumbered(records, 6);
    EXPECT_EQ(records.erase(records.begin() + 1), records.begin() + 1);
    EXPECT_EQ(records.size(), 5U);
    EXPECT_EQ(records[1], Record(2));
    records.erase(records.begin() + 1, records.begin() + 4);
    EXPECT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0], Record(0));
    EXPECT_EQ(records[1], Record(5));
    records.pop_back();
    EXPECT_EQ(records.size(), 1U);
    records.clear();
    EXPECT_TRUE(records.empty());
    EXPECT_GT(records.capacity(), 0U);
}

TEST_P(GrowingArrays, shrinkKeepsWhatIsUsedAndGrowsAgain) {
    for (const std::size_t kept : {std::size_t{0}, std::size_t{1}, SMALLEST_ON_PAGES / 2,
                                   SMALLEST_ON_PAGES, 40 * SMALLEST_ON_PAGES}) {
        SCOPED_TRACE(kept);
        Records records;
        appendNumbered(records, 50 * SMALLEST_ON_PAGES);
        records.resize(kept);
        const std::size_t capacity = records.capacity();
        records.shrink_to_fit();
        EXPECT_LT(records.capacity(), capacity);
        EXPECT_GE(records.capacity(), kept);
        EXPECT_EQ(firstSpoilt(records), kept);
        appendNumbered(records, 60 * SMALLEST_ON_PAGES);
        EXPECT_EQ(firstSpoilt(records), 60 * SMALLEST_ON_PAGES);
    }
}

TEST_P(GrowingArrays, areCopiedMovedAndSwapped) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{5}, 2 * SMALLEST_ON_PAGES}) {
        SCOPED_TRACE(size);
        Records records;
        appendNumbered(records, size);
        Records copy = records;
        EXPECT_EQ(copy.size(), size);
        EXPECT_EQ(firstSpoilt(copy), size);
        copy.push_back(Record(-1));
        EXPECT_EQ(records.size(), size);

        const Record* place = copy.data();
        Records moved = std::move(copy);
        EXPECT_EQ(moved.data(), place);
        EXPECT_EQ(moved.size(), size + 1);
        records = std::move(moved);
        EXPECT_EQ(records.data(), place);
        Records& same = records;
        records = same;
        EXPECT_EQ(records.size(), size + 1);

        Records other;
        other.swap(records);
        EXPECT_TRUE(records.empty());
        EXPECT_EQ(other.back(), Record(-1));
    }
}

TEST_P(GrowingArrays, areAsTheyWereWhenMemoryRunsOut) {
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{4}, SMALLEST_ON_PAGES, 40 * SMALLEST_ON_PAGES}) {
        SCOPED_TRACE(size);
        Records records;
        appendNumbered(records, size);
        records.shrink_to_fit();
        appendNumbered(records, records.capacity());
        const std::size_t fullSize = records.size();
        const Record* place = records.data();
        {
            const AllocationBudget nothing(0);
            EXPECT_THROW(records.push_back(Record(1)), std::bad_alloc);
            EXPECT_THROW(records.reserve(10 * fullSize + 10), std::bad_alloc);
            EXPECT_THROW(records.resize(10 * fullSize + 10), std::bad_alloc);
        }
        EXPECT_EQ(records.size(), fullSize);
        EXPECT_EQ(records.data(), place);
        EXPECT_EQ(firstSpoilt(records), fullSize);
    }
}

TEST_P(GrowingArrays, atKnowsItsEnd) {
    Records records(2, Record(8));
    EXPECT_EQ(records.at(1), Record(8));
    EXPECT_THROW(records.at(2), std::out_of_range);
}

TEST_P(GrowingArrays, refuseWhatNoMachineHolds) {
    Records records;
    records.push_back(Record(3));
    EXPECT_THROW(records.reserve(SIZE_MAX / 2), std::length_error);
    EXPECT_EQ(records.size(), 1U);
    EXPECT_EQ(records[0], Record(3));
}

TEST(GrowingArraysOnPages, goOnOnTheHeapWhenPagesAreRefused) {
    Records records;
    {
        const PagesAllowed pages;
        appendNumbered(records, 40 * SMALLEST_ON_PAGES);
    }
    const std::size_t bytesBefore = getBytesInUse();
    appendNumbered(records, 2 * records.capacity());
    EXPECT_GE(getBytesInUse() - bytesBefore, records.size() * sizeof(Record));
    EXPECT_EQ(firstSpoilt(records), records.size());
    records = Records();
    EXPECT_EQ(getBytesInUse(), bytesBefore);
}

TEST(GrowingArraysOnPages, takeLittleFromTheHeap) {
    const PagesAllowed pages;
    watchBytesInUse();
    const std::size_t bytesBefore = getBytesInUse();
    Records records;
    appendNumbered(records, 40 * SMALLEST_ON_PAGES);
    EXPECT_LE(getMostBytesInUse() - bytesBefore, 2 * SMALLEST_OWN_PAGES);
    EXPECT_EQ(getBytesInUse(), bytesBefore);
}

TEST(GrowingArraysOnPages, manyComeAndGo) {
    const PagesAllowed pages;
    std::vector<Records> tables(50);
    for (int turn = 0; turn < 3; ++turn) {
        for (Records& records : tables) {
            records = Records();
            appendNumbered(records, 3 * SMALLEST_ON_PAGES);
        }
    }
    for (const Records& records : tables)
        ASSERT_EQ(firstSpoilt(records), 3 * SMALLEST_ON_PAGES);
}

// Knows where it stands, so that bytes alone do not carry it along, and how many there
// are.
class LivingRecord {
public:
    explicit LivingRecord(int number = 0) : self(this), name(nameOf(number)) { ++living; }
    LivingRecord(const LivingRecord& other) : self(this), name(other.name) { ++living; }
    LivingRecord(LivingRecord&& other) noexcept : self(this), name(std::move(other.name)) {
        ++living;
    }
    LivingRecord& operator=(const LivingRecord& other) = delete;
    LivingRecord& operator=(LivingRecord&& other) noexcept {
        name = std::move(other.name);
        return *this;
    }
    ~LivingRecord() { --living; }

    bool isNumber(int number) const { return self == this && name == nameOf(number); }

    static std::ptrdiff_t living;

private:
    static std::string nameOf(int number) {
        return "a name with memory of its own, number " + std::to_string(number);
    }

    const LivingRecord* self;
    std::string name;
    std::array<char, 1000> rest{};
};

std::ptrdiff_t LivingRecord::living = 0;

using LivingRecords = GrowingArray<LivingRecord>;

// The first position whose record is not the one with that number.
std::size_t firstWrong(const LivingRecords& records) {
    std::size_t position = 0;
    while (position < records.size() && records[position].isNumber(static_cast<int>(position)))
        ++position;
    return position;
}

// Enough for pages, and for more of those than the first range has on any system that
// copies to a larger one early.
constexpr int MANY_LIVING_RECORDS = 40000;

TEST_P(GrowingArrays, moveRecordsThatAreMoreThanBytes) {
    {
        LivingRecords records;
        for (int number = 0; number < MANY_LIVING_RECORDS; ++number) {
            if (number % 2 == 0)
                records.emplace_back(number);
            else
                records.push_back(LivingRecord(number));
        }
        EXPECT_EQ(firstWrong(records), static_cast<std::size_t>(MANY_LIVING_RECORDS));
        EXPECT_EQ(LivingRecord::living, MANY_LIVING_RECORDS);

        const LivingRecords copy = records;
        EXPECT_EQ(firstWrong(copy), records.size());
        LivingRecords moved = std::move(records);
        EXPECT_EQ(firstWrong(moved), copy.size());
        EXPECT_EQ(LivingRecord::living, 2 * MANY_LIVING_RECORDS);
    }
    EXPECT_EQ(LivingRecord::living, 0);
}

TEST_P(GrowingArrays, destroyTheRecordsTheyDrop) {
    LivingRecords records;
    for (int number = 0; number < 10; ++number)
        records.emplace_back(number);
    records.erase(records.begin() + 2, records.begin() + 5);
    EXPECT_EQ(LivingRecord::living, 7);
    EXPECT_TRUE(records[2].isNumber(5));
    EXPECT_TRUE(records[6].isNumber(9));
    records.pop_back();
    EXPECT_EQ(LivingRecord::living, 6);
    records.resize(3);
    EXPECT_EQ(LivingRecord::living, 3);
    records.resize(5);
    EXPECT_EQ(LivingRecord::living, 5);
    EXPECT_TRUE(records[4].isNumber(0));
    records.clear();
    EXPECT_EQ(LivingRecord::living, 0);
}

// A record of the array itself may be appended, and failing to grow changes nothing.
TEST_P(GrowingArrays, keepRecordsThatAreMoreThanBytesWhenMemoryRunsOut) {
    {
        LivingRecords records;
        records.emplace_back(0);
        for (int number = 1; records.size() < records.capacity(); ++number)
            records.emplace_back(number);
        const std::size_t size = records.size();
        {
            const AllocationBudget budget(0);
            EXPECT_THROW(records.emplace_back(), std::bad_alloc);
        }
        EXPECT_EQ(firstWrong(records), size);
        EXPECT_EQ(LivingRecord::living, static_cast<std::ptrdiff_t>(size));
        records.push_back(records.front());
        EXPECT_TRUE(records.back().isNumber(0));
    }
    EXPECT_EQ(LivingRecord::living, 0);
}

}  // namespace

}  // namespace obj_adapter::test
