// What the verbs print with --json. docs/toolOutput.schema.json describes it;
// tests/tools/jsonSchemaTest.cpp holds each output against it.
#pragma once

#include "importRun.h"

#include <nlohmann/json.hpp>

#include <iosfwd>
#include <string>

namespace obj_adapter::tool {

// Keys stay in the order in which they were written.
using Json = nlohmann::ordered_json;

// Raised when a key is removed or changes its meaning, not for new ones.
constexpr int JSON_FORMAT_VERSION = 1;

// What every output begins with.
Json makeJson(const char* verb);

// Null for what is not a finite number.
Json jsonNumber(double value);

Json stagesToJson(const std::vector<StageTime>& stages);

// Bytes of a file that are no UTF-8 are replaced by U+FFFD.
void printJson(std::ostream& out, const Json& json);

}  // namespace obj_adapter::tool
