#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "analysis/run/frontend.h"
#include "batch/command_line.h"
#include "report/report_facts.h"

// The run flow without a window: options come from the command line, texts are left in the report for the
// end, progress goes to a terminal on standard error once a run takes long enough for a person to wonder.
class BatchFrontend : public Frontend {
public:
    explicit BatchFrontend(const CommandLine& line);

    void showUpper(const Report& report) override;
    void showLower(const Report& report) override;
    void showStatus(const Report&) override {}
    void showProgress() override;
    ErrorCode setProgress(int percent) override;
    ErrorCode setProgressWithin(int from, int to, double part) override {
        return setProgress(std::max(percent_, from + static_cast<int>(part * (to - from))));
    }
    void hideProgress() override;
    void alert(const char* text, const char* caption) override;
    bool chooseOptions(AnalysisRun& run, const AnalysisKind& kind) override;
    PredictionStep enterPrediction(const AnalysisRun&, PredictionEntry&, int) override {
        return PredictionStep::cancelled;
    }
    void setDataLoaded(bool) override {}
    void enablePrediction(bool) override {}
    void openGraphWindow(const Graph&) override {}
    void closeGraph() override {}
    FileCode readTable(const char* path, CellTable& cells, ReadingNotes& notes) override;
    FileCode readMoments(const char* path, MomentTable& moments, ReadingNotes& notes) override;
    Index workers() const override;
    ErrorCode computeParts(PartedWork& work, Index workers) override;

    // The text that was shown last.
    const TextBuffer* shown() const { return shown_; }
    // The file that was read.
    const FileFacts& file() const { return file_; }
    bool hasAlerted() const { return alerted_; }

private:
    // Null where it cannot be opened, which is noted.
    std::FILE* openFile(const char* path, ReadingNotes& notes);

    const CommandLine& line_;
    const TextBuffer* shown_ = nullptr;
    FileFacts file_;
    bool alerted_ = false;
    std::chrono::steady_clock::time_point start_;
    bool onTerminal_;
    int percent_ = -1; // on the terminal
};
