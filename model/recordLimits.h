// Internal: the limits that signed 32-bit indices set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <stdexcept>

namespace obj_adapter {

// The most records that a table can hold and still be counted by an int.
constexpr std::size_t MAX_RECORDS = std::numeric_limits<std::int32_t>::max();

// The index of a record to be appended to a table that holds recordCount.
//
// Throws std::length_error when the table is full.
inline std::int32_t nextRecordIndex(std::size_t recordCount) {
    if (recordCount >= MAX_RECORDS)
        throw std::length_error("Too many records for 32-bit indices");
    return static_cast<std::int32_t>(recordCount);
}

}  // namespace obj_adapter
