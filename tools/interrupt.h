// Ctrl-C during an import or while a file is written: the import is cancelled, the file
// removed, and the program then ends as an interrupted one does.
#pragma once

namespace obj_adapter::tool {

// Thrown where something was cancelled; main() catches it.
struct Interrupted {};

// While it lives, the first interrupt is only noted. A second one ends the program
// at once, whatever it does. Where interrupts are ignored, they stay so.
class InterruptWatch {
public:
    InterruptWatch();
    ~InterruptWatch();
    InterruptWatch(const InterruptWatch&) = delete;
    InterruptWatch& operator=(const InterruptWatch&) = delete;

    static bool wasInterrupted();

private:
    using Handler = void (*)(int);
    Handler earlier;
};

// Ends the program by the interrupt itself where a shell can see that, so that its
// loops end as well; returns the exit code for elsewhere.
int endInterrupted();

}  // namespace obj_adapter::tool
