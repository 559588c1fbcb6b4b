#pragma once

#include "analysis/run/frontend.h"
#include "app/dde_client.h"

// The run flow in the window: texts into the screens, progress into the status bar, options from dialogs.
class WindowFrontend : public Frontend {
public:
    explicit WindowFrontend(Program& program) : program_(program), workbook_(program) {}

    void showUpper(const Report& report) override;
    void showLower(const Report& report) override;
    void showStatus(const Report& report) override;
    void showProgress() override;
    ErrorCode setProgress(int percent) override;
    void hideProgress() override;
    void alert(const char* text, const char* caption) override;
    bool chooseOptions(AnalysisRun& run, const AnalysisKind& kind) override;
    PredictionStep enterPrediction(const AnalysisRun& run, PredictionEntry& entry, int page) override;
    void setDataLoaded(bool loaded) override;
    void enablePrediction(bool enabled) override;
    void enableResults(bool columns, bool picture) override;
    void openGraphWindow(const Graph& graph) override;
    void closeGraph() override;
    Workbook* workbook() override { return &workbook_; }

private:
    bool isEscapePressed();

    Program& program_;
    bool isHeldBefore_ = false; // Esc, since before the run
    bool isStopped_ = false;
    DdeWorkbook workbook_;
};
