// Progress and cancelling. Covered by tests/converter/progressTest.cpp.
#include "converter/progress.h"

#include "converter/converterState.h"
#include "converter/hostCall.h"

#include <algorithm>

namespace obj_adapter {

ImportProgress* ImportProgress::innermost = nullptr;

void ImportProgress::begin(int newStage) noexcept {
    stage = newStage;
    fraction = 0.0;
    askHost();
}

void ImportProgress::count(std::size_t units) noexcept {
    workSinceCall += units;
    if (workSinceCall >= WORK_BETWEEN_CALLS)
        askHost();
}

// The callback is that of the moment, as with messages. What it throws counts as
// its wish to stop; once it has said so it is not asked again.
void ImportProgress::askHost() noexcept {
    workSinceCall = 0;
    const ConverterState* state = currentConverterState();
    if (cancelled || state == nullptr || state->progressCallback == nullptr)
        return;
    try {
        const HostCall call;
        cancelled = !state->progressCallback(state->progressUserData, stage, fraction);
    } catch (...) {
        cancelled = true;
    }
}

void beginStage(int stage) {
    if (ImportProgress* progress = ImportProgress::getInnermost())
        progress->begin(stage);
    stopIfCancelled();
}

void countWork(std::size_t units, double fraction) {
    countWorkOfChange(units, fraction);
    stopIfCancelled();
}

void countWork(std::size_t units) {
    if (ImportProgress* progress = ImportProgress::getInnermost())
        progress->count(units);
    stopIfCancelled();
}

void countWorkOfChange(std::size_t units, double fraction) noexcept {
    if (ImportProgress* progress = ImportProgress::getInnermost()) {
        progress->setFraction(fraction);
        progress->count(units);
    }
}

void WorkOfChange::passOn() noexcept {
    counted += uncounted;
    countWorkOfChange(uncounted, std::min(1.0, static_cast<double>(counted) / allUnits));
    uncounted = 0;
}

void stopIfCancelled() {
    const ImportProgress* progress = ImportProgress::getInnermost();
    if (progress != nullptr && progress->isCancelled())
        throw ImportCancelled();
}

}  // namespace obj_adapter
