// Internal: how the stages tell the host how far they are, and learn that it wants
// to stop. Hosts use ObjConverter::setProgressCallback.
//
// Without a callback all of this costs nothing that could be measured, as long as
// work is counted by the thousand.
#pragma once

#include <cstddef>

namespace obj_adapter {

// Ends an import that the host has cancelled. No std::exception, so that only
// catch-alls have to let it pass; each does.
class ImportCancelled {};

// The host is asked about this often, in units of work: bytes read, records moved,
// corners tested.
constexpr std::size_t WORK_BETWEEN_CALLS = 1'000'000;

// Enough work for a stage to count at once.
constexpr std::size_t WORK_COUNTED_AT_ONCE = WORK_BETWEEN_CALLS / 16;

// How far one import is, from its start to its end.
class ImportProgress {
public:
    ImportProgress() noexcept : outer(innermost) { innermost = this; }
    ~ImportProgress() { innermost = outer; }
    ImportProgress(const ImportProgress&) = delete;
    ImportProgress& operator=(const ImportProgress&) = delete;

    // Of the running import; null when none runs. A host that destroys the
    // converter in a callback can start an import within an import.
    static ImportProgress* getInnermost() noexcept { return innermost; }

    void begin(int newStage) noexcept;
    void count(std::size_t units) noexcept;
    void setFraction(double done) noexcept { fraction = done; }
    bool isCancelled() const noexcept { return cancelled; }

private:
    void askHost() noexcept;

    static ImportProgress* innermost;

    ImportProgress* outer;
    int stage = 0;
    double fraction = 0.0;
    std::size_t workSinceCall = 0;
    bool cancelled = false;
};

// A stage begins: one of ObjConverter's STAGE_... constants. Throws
// ImportCancelled.
void beginStage(int stage);

// So much work was done since the last call.
//
// fraction  how much of the stage is done, from 0 to 1; left out, it is as at the
//           last call
//
// Throws ImportCancelled when the host wants to stop.
void countWork(std::size_t units, double fraction);
void countWork(std::size_t units);

// Like countWork, in the middle of a change that must not be left half-way: the
// host's wish to stop is kept for stopIfCancelled.
void countWorkOfChange(std::size_t units, double fraction) noexcept;

// Counts one unit after the other of a change whose whole size is known.
class WorkOfChange {
public:
    explicit WorkOfChange(std::size_t unitsOfAll) noexcept
        : allUnits(static_cast<double>(unitsOfAll)) {}
    WorkOfChange(const WorkOfChange&) = delete;
    WorkOfChange& operator=(const WorkOfChange&) = delete;

    void count(std::size_t units) noexcept {
        uncounted += units;
        if (uncounted >= WORK_COUNTED_AT_ONCE)
            passOn();
    }

private:
    void passOn() noexcept;

    double allUnits;
    std::size_t counted = 0;
    std::size_t uncounted = 0;
};

// Throws ImportCancelled if the host has said that it wants to stop.
void stopIfCancelled();

}  // namespace obj_adapter
