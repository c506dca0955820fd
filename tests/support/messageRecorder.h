// Collects what the library says to its host.
#pragma once

#include <string>
#include <vector>

namespace obj_adapter::test {

// Receives the messages of the process's converter from construction to
// destruction. Only one at a time.
class MessageRecorder {
public:
    MessageRecorder();
    ~MessageRecorder();
    MessageRecorder(const MessageRecorder&) = delete;
    MessageRecorder& operator=(const MessageRecorder&) = delete;

    // Sets the callback again, after clearInstance.
    void install();

    // Each "level|text", in order.
    const std::vector<std::string>& getMessages() const { return messages; }

    // The same in one text, a line feed after each.
    std::string getText() const;

    void clear() { messages.clear(); }

private:
    static void receive(int level, const char* text);

    std::vector<std::string> messages;
};

}  // namespace obj_adapter::test
