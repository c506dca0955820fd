// Messages to the host. Covered by tests/converter/messagesTest.cpp.
#include "converter/messages.h"

#include "converter/converterState.h"
#include "converter/hostCall.h"

#include <obj_adapter/objConverter.h>

#include <cstddef>
#include <new>

namespace obj_adapter {

namespace {

void report(int level, const char* text) {
    const ConverterState* state = currentConverterState();
    if (state == nullptr || state->messageCallback == nullptr)
        return;
    const HostCall call;
    state->messageCallback(level, text);
}

// Enough for every text of our own.
constexpr std::size_t EMERGENCY_TEXT_SIZE = 512;

// Appends as much of the text as there is room for before the final zero.
void appendCut(char (&buffer)[EMERGENCY_TEXT_SIZE], std::size_t& length, const char* text) {
    while (*text != '\0' && length < EMERGENCY_TEXT_SIZE - 1)
        buffer[length++] = *text++;
    buffer[length] = '\0';
}

}  // namespace

HostCall::~HostCall() {
    // Looked up now: the callback may have destroyed the converter.
    if (ConverterState* state = currentConverterState())
        state->model.materialTable.hostHasRun();
}

void reportError(const char* text) {
    report(ObjConverter::MESSAGE_ERROR, text);
}

void reportError(const std::string& text) {
    reportError(text.c_str());
}

void reportWarning(const char* text) {
    report(ObjConverter::MESSAGE_WARNING, text);
}

void reportWarning(const std::string& text) {
    reportWarning(text.c_str());
}

void reportInformation(const char* text) {
    report(ObjConverter::MESSAGE_INFORMATION, text);
}

void reportInformation(const std::string& text) {
    reportInformation(text.c_str());
}

void reportFailure(const char* beginning, const char* reason) {
    std::string text;
    try {
        text = std::string(beginning) + reason;
    } catch (const std::bad_alloc&) {
        char emergencyText[EMERGENCY_TEXT_SIZE];
        std::size_t length = 0;
        appendCut(emergencyText, length, beginning);
        appendCut(emergencyText, length, reason);
        reportError(emergencyText);
        return;
    }
    reportError(text);
}

const char* failureText(const std::exception& failure) noexcept {
    if (dynamic_cast<const std::bad_alloc*>(&failure) != nullptr)
        return "bad allocation";
    return failure.what();
}

}  // namespace obj_adapter
