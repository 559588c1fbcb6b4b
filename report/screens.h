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
    virtual void hideProgress() = 0;

    virtual void alert(const char* text, const char* caption) = 0;
};

// How every driver begins its computation: no status, an empty progress bar. Returns what setProgress does.
[[nodiscard]] inline ErrorCode startProgress(Screens& screens, Report& report) {
    report.status.clear();
    screens.showStatus(report);
    screens.showProgress();
    return screens.setProgress(0);
}
