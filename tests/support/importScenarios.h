// Whole imports with settings, one for every part of the library that a host
// can come upon: what tests repeat under exhausted memory, under hosts that
// throw, in other floating-point modes.
#pragma once

#include "support/importText.h"

#include <ostream>
#include <string>
#include <vector>

namespace obj_adapter::test {

struct ImportScenario {
    const char* title;  // letters only: it names tests
    std::string objText;
    ImportOptions options;  // with the material libraries that objText names
};

// Small ones, that together send every message of the library but those of a
// file that cannot be opened.
const std::vector<ImportScenario>& importScenarios();

// One with tables so large that they have pages of their own, and one round.
const std::vector<ImportScenario>& largeImportScenarios();

// For the names of value-parameterized tests.
inline void PrintTo(const ImportScenario& scenario, std::ostream* stream) {
    *stream << scenario.title;
}

}  // namespace obj_adapter::test
