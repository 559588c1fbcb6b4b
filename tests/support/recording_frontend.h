#pragma once

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "analysis/run/data_file.h"
#include "tests/support/whole_text.h"

// A front end that keeps what it was told to show. Its `log` has a word for each call, in order, so that one
// comparison shows what happened and what did not.
class RecordingFrontend : public Frontend {
public:
    std::string upper, lower, status; // as last shown
    std::string log;
    std::vector<int> percentages;
    Workbook* book = nullptr;
    // The user at the option dialog.
    std::function<bool(AnalysisRun&)> choose = [](AnalysisRun&) { return true; };
    // And at a prediction page.
    std::function<PredictionStep(const AnalysisRun&, PredictionEntry&, int)> enter =
        [](const AnalysisRun&, PredictionEntry&, int) { return PredictionStep::next; };

    std::string takeLog() { return std::exchange(log, ""); }

    void showUpper(const Report& report) override { keep(upper, report.upper, "upper"); }
    void showLower(const Report& report) override { keep(lower, report.lower, "lower"); }
    void showStatus(const Report& report) override { keep(status, report.status, "status"); }
    void showProgress() override { note("progress"); }
    ErrorCode setProgress(int percent) override {
        percentages.push_back(percent);
        return setProgressWithin(percent, percent, 1.0);
    }
    // Ends the run when it is asked for the n-th time; never with 0.
    long long stopAt = 0;
    ErrorCode setProgressWithin(int, int, double part) override {
        if (!(part >= 0.0 && part <= 1.0)) std::abort(); // fuzz runs, too, would notice
        return --stopAt == 0 ? stopped : success;
    }
    void hideProgress() override { note("hidden"); }
    void alert(const char* text, const char* caption) override {
        note("alert(" + std::string(text) + "/" + caption + ")");
    }
    bool chooseOptions(AnalysisRun& run, const AnalysisKind&) override {
        note("dialog");
        return choose(run);
    }
    PredictionStep enterPrediction(const AnalysisRun& run, PredictionEntry& entry, int page) override {
        note("page " + std::to_string(page));
        return enter(run, entry, page);
    }
    void setDataLoaded(bool loaded) override { note(loaded ? "loaded" : "unloaded"); }
    void enablePrediction(bool enabled) override { note(enabled ? "prediction" : "no-prediction"); }
    void openGraphWindow(const Graph&) override { note("graph"); }
    void closeGraph() override { note("graph-closed"); }
    Workbook* workbook() override { return book; }

private:
    void keep(std::string& shown, const TextBuffer& text, const char* word) {
        shown = wholeText(text);
        note(word);
    }
    void note(const std::string& word) { log += (log.empty() ? "" : " ") + word; }
};

// A run as a fresh start of the program has it.
inline void startRun(AnalysisRun& run, TextBuffer::Growth growth = TextBuffer::Growth::fixed) {
    Settings settings;
    setDefaultSettings(settings);
    startOptions(run.options, settings);
    run.options.clusterCount = 2;
    run.columns.areWanted = true;
    ASSERT_EQ(allocateReport(run.report, growth), success);
}

// Opens a file with this text as "Open File" would, the summary included.
inline FileCode loadText(Frontend& frontend, AnalysisRun& run, const std::string& text) {
    const std::string path = testing::TempDir() + "ombrivantel-" + std::to_string(getpid()) + ".csv";
    std::ofstream(path, std::ios::binary) << text;
    std::snprintf(run.data.path, sizeof run.data.path, "%s", path.c_str());
    const FileCode code = loadDataFile(frontend, run).file;
    std::remove(path.c_str());
    if (code == FileCode::done) showLoadedData(frontend, run);
    return code;
}
