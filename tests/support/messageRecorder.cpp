#include "support/messageRecorder.h"

#include <obj_adapter/obj_adapter.h>

namespace obj_adapter::test {

namespace {

MessageRecorder* currentRecorder = nullptr;

}  // namespace

MessageRecorder::MessageRecorder() {
    currentRecorder = this;
    install();
}

MessageRecorder::~MessageRecorder() {
    currentRecorder = nullptr;
    ObjConverter::getInstance()->setMsgCallback(nullptr);
}

void MessageRecorder::install() {
    ObjConverter::getInstance()->setMsgCallback(&MessageRecorder::receive);
}

std::string MessageRecorder::getText() const {
    std::string text;
    for (const std::string& message : messages)
        text += message + "\n";
    return text;
}

void MessageRecorder::receive(int level, const char* text) {
    if (currentRecorder != nullptr)
        currentRecorder->messages.push_back(std::to_string(level) + "|" + text);
}

}  // namespace obj_adapter::test
