#pragma once

#include <algorithm>
#include <atomic>

#include "numeric/block.h"

// Work in parts that do not depend on each other, as the columns of a data matrix or the pairs of them.
// Several workers may compute it at once, each on a thread of its own. Which worker takes which part is
// chance, so no result may depend on it.
class PartedWork {
public:
    explicit PartedWork(Index parts) : parts_(parts) {}

    // Computes parts until none is left. The worker is told by its number, which is not 0.
    void computeAs(Index worker) {
        for (Index part = take(); part < parts_; part = take()) compute(part, worker);
    }
    // The same by worker 0, the thread that the program runs on. What ends the run ends the others after the
    // parts that they have begun; it is returned.
    [[nodiscard]] ErrorCode computeAsFirst() {
        for (Index part = take(); part < parts_; part = take()) {
            compute(part, 0);
            const ErrorCode code = advance(part);
            if (code != success) {
                next_ = parts_;
                return code;
            }
        }
        return success;
    }

protected:
    ~PartedWork() = default;

private:
    // Writes what no other part touches and the scratch of its worker. Memory is asked for before:
    // allocateZeroed serves one thread.
    virtual void compute(Index part, Index worker) = 0;
    // Moves the progress on after a part of worker 0.
    [[nodiscard]] virtual ErrorCode advance(Index part) = 0;

    Index take() { return next_.fetch_add(1, std::memory_order_relaxed); }

    Index parts_;
    std::atomic<Index> next_ = 0;
};

// How many of at most `workers` are worth their start for so many parts, each of so many values.
inline Index usefulWorkers(Index workers, Index parts, Index values) {
    constexpr Index leastValues = 50000; // of a worker: some hundred microseconds, several times its start
    return std::clamp<Index>(std::min(parts, parts * values / leastValues), 1, std::max<Index>(workers, 1));
}
