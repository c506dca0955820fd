// Loads the library into a running process and imports one file.
#include "imports/plugin.h"
#include "measuring/contender.h"

#include <stdexcept>

#include <dlfcn.h>

namespace obj_adapter::bench {

namespace {

void start(const Arguments& arguments, Measured& measured) {
    measured.time("load", [] { dlopen(BENCH_LIBRARY, RTLD_NOW); });
    void* plugin = dlopen(BENCH_PLUGIN, RTLD_NOW);
    int faces = 0;
    if (plugin == nullptr)
        throw std::runtime_error(dlerror());
    const auto importOnce = reinterpret_cast<ImportOnce>(dlsym(plugin, IMPORT_ONCE));
    measured.time("first import", [&] { faces = importOnce(arguments.at(0).c_str()); });
    measured.time("second import", [&] { importOnce(arguments.at(0).c_str()); });
    if (faces <= 0)
        throw std::runtime_error("cannot import " + arguments.at(0));
    measured.setCount("faces", faces);
}

constexpr Command COMMANDS[] = {{"start", "FILE", &start}};

}  // namespace

}  // namespace obj_adapter::bench

int main(int argc, char** argv) {
    return obj_adapter::bench::runContender(argc, argv, obj_adapter::bench::COMMANDS);
}
