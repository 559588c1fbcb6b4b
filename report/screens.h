#pragma once

#include "report/parted_work.h"
#include "report/report.h"

// The little that the core may do to the outside. The window, the batch runner and the tests each have
// theirs.
class Screens {
public:
    virtual ~Screens() = default;

    virtual void showUpper(const Report& report) = 0;
    virtual void showLower(const Report& report) = 0;
    virtual void showStatus(const Report& report) = 0;

    virtual void showProgress() = 0;
    // Returns success, or the code that ends the run here: engines hand it on.
    [[nodiscard]] virtual ErrorCode setProgress(int percent) = 0;
    // The same inside a stage from one percentage to the next, `part` of it done. The bar of the window stays
    // at the first until the second is reached.
    [[nodiscard]] virtual ErrorCode setProgressWithin(int from, [[maybe_unused]] int to,
                                                      [[maybe_unused]] double part) {
        return setProgress(from);
    }
    virtual void hideProgress() = 0;

    virtual void alert(const char* text, const char* caption) = 0;

    // How many workers compute parted work at once. What they need is had for each of them before.
    virtual Index workers() const { return 1; }
    // Lets up to so many of them compute it, the caller among them, and returns when all of it is done or
    // what ended it.
    [[nodiscard]] virtual ErrorCode computeParts(PartedWork& work, [[maybe_unused]] Index workers) {
        return work.computeAsFirst();
    }
};

// Lets workers compute parts by compute(part, worker); advance(part) tells how far it is.
template <class Compute, class Advance>
[[nodiscard]] ErrorCode computeParts(Screens& screens, Index parts, Index workers, Compute compute,
                                     Advance advance) {
    class Work final : public PartedWork {
    public:
        Work(Index count, Compute& each, Advance& tell) : PartedWork(count), each_(each), tell_(tell) {}

    private:
        void compute(Index part, Index worker) override { each_(part, worker); }
        ErrorCode advance(Index part) override { return tell_(part); }
        Compute& each_;
        Advance& tell_;
    };
    Work work(parts, compute, advance);
    return screens.computeParts(work, workers);
}

// A stage of a computation that can take long, for the engine that computes it: where it is told how far it
// is, it asks whether to go on.
struct Stage {
    Screens* screens = nullptr; // null: nobody is told
    int from = 0;
    int to = 0;

    [[nodiscard]] ErrorCode advance(Index done, Index all) const {
        return advanceTo(static_cast<double>(done) / static_cast<double>(all));
    }
    // Of rounds that end nobody knows when.
    [[nodiscard]] ErrorCode advance(Index rounds) const {
        constexpr double usual = 8.0; // are half of the stage
        return advanceTo(static_cast<double>(rounds) / (static_cast<double>(rounds) + usual));
    }

private:
    ErrorCode advanceTo(double part) const {
        return screens != nullptr ? screens->setProgressWithin(from, to, part) : success;
    }
};

// How every driver begins its computation: no status, an empty progress bar. Returns what setProgress does.
[[nodiscard]] inline ErrorCode startProgress(Screens& screens, Report& report) {
    report.status.clear();
    screens.showStatus(report);
    screens.showProgress();
    return screens.setProgress(0);
}
