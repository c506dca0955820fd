// Single stages of the library, reached from inside, and the floors beside them.
#include "measuring/contender.h"
#include "stages/readingFloors.h"

namespace obj_adapter::bench {

namespace {

constexpr Command COMMANDS[] = {
    {"bytes", "FILE", &readBytes},
    {"lines", "FILE", &findLines},
    {"numbers", "FILE", &convertNumbers},
    {"records", "FILE", &writeRecords},
};

}  // namespace

}  // namespace obj_adapter::bench

int main(int argc, char** argv) {
    return obj_adapter::bench::runContender(argc, argv, obj_adapter::bench::COMMANDS);
}
