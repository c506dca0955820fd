// Indices are signed 32-bit: tables end before one would wrap.
#include "model/recordLimits.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>

namespace obj_adapter::test {

namespace {

TEST(RecordLimits, nextIndexIsTheNumberOfRecords) {
    EXPECT_EQ(nextRecordIndex(0), 0);
    EXPECT_EQ(nextRecordIndex(1), 1);
    EXPECT_EQ(nextRecordIndex(1000000), 1000000);
}

// The number of records must fit an int as well, so the highest int is never an
// index.
TEST(RecordLimits, lastIndexIsOneBelowTheHighestInt) {
    EXPECT_EQ(MAX_RECORDS, 2147483647U);
    EXPECT_EQ(nextRecordIndex(MAX_RECORDS - 1), 2147483646);
}

TEST(RecordLimits, fullTableTakesNoMore) {
    for (const std::size_t recordCount : {MAX_RECORDS, MAX_RECORDS + 1, std::size_t{4294967295U},
                                          std::numeric_limits<std::size_t>::max()}) {
        SCOPED_TRACE(recordCount);
        try {
            const std::int32_t index = nextRecordIndex(recordCount);
            FAIL() << "gave " << index;
        } catch (const std::length_error& failure) {
            EXPECT_STREQ(failure.what(), "Too many records for 32-bit indices");
        }
    }
}

}  // namespace

}  // namespace obj_adapter::test
