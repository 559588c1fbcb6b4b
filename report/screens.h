#pragma once

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
    [[nodiscard]] virtual ErrorCode setProgressWithin(int from, int to, double part) {
        static_cast<void>(to);
        static_cast<void>(part);
        return setProgress(from);
    }
    virtual void hideProgress() = 0;

    virtual void alert(const char* text, const char* caption) = 0;
};

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
