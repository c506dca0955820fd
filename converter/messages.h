// Internal: how every stage speaks to the host. Hosts use
// ObjConverter::setMsgCallback.
//
// A message goes to the callback that is set at the moment of the call, exactly
// as composed; without a callback it is dropped. The callback runs with the
// host's own floating-point mode. What it throws passes on to the caller.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace obj_adapter {

// Level 1: a line, file or model could not be processed.
void reportError(const char* text);
void reportError(const std::string& text);

// Level 2: a value was repaired, overridden or ignored.
void reportWarning(const char* text);
void reportWarning(const std::string& text);

// Level 3: progress and statistics.
void reportInformation(const char* text);
void reportInformation(const std::string& text);

// Level 1 with a text of two parts, for the ways out of a failure: when there
// is no memory for the text, it is composed without, and cut if it is long.
void reportFailure(const char* beginning, const char* reason);

// The text of a failure as messages show it: what() itself, but for exhausted
// memory "bad allocation" on every platform.
const char* failureText(const std::exception& failure) noexcept;

// Names are cut to this many bytes where a message cites them.
constexpr std::size_t MAX_REPORTED_NAME = 100;

inline std::string reportedName(std::string_view name) {
    return std::string(name.substr(0, MAX_REPORTED_NAME));
}

}  // namespace obj_adapter
