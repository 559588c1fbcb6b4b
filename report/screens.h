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
    virtual void setProgress(int percent) = 0;
    virtual void hideProgress() = 0;

    virtual void alert(const char* text, const char* caption) = 0;
};

// How every driver begins its computation: no status, an empty progress bar.
inline void startProgress(Screens& screens, Report& report) {
    report.status.clear();
    screens.showStatus(report);
    screens.showProgress();
    screens.setProgress(0);
}
