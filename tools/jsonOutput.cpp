// The common parts of JSON output. Covered by tests/tools/jsonSchemaTest.cpp.
#include "jsonOutput.h"

#include "programVersion.h"

#include <cmath>
#include <ostream>

namespace obj_adapter::tool {

Json makeJson(const char* verb) {
    Json json;
    json["format"] = JSON_FORMAT_VERSION;
    json["program"] = getProgramVersion();
    json["verb"] = verb;
    return json;
}

Json jsonNumber(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}

Json stagesToJson(const std::vector<StageTime>& stages) {
    Json list = Json::array();
    for (const StageTime& stage : stages) {
        Json entry;
        entry["name"] = stage.name;
        entry["milliseconds"] = jsonNumber(stage.time.count());
        entry["finished"] = stage.finished;
        list.push_back(std::move(entry));
    }
    return list;
}

void printJson(std::ostream& out, const Json& json) {
    constexpr int INDENT = 2;
    out << json.dump(INDENT, ' ', false, Json::error_handler_t::replace) << "\n";
}

}  // namespace obj_adapter::tool
