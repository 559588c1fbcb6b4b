#pragma once

#include "analysis/run/analysis_kind.h"
#include "analysis/run/prediction_entry.h"
#include "data/csv_reader.h"
#include "data/spreadsheet.h"
#include "report/screens.h"

// What the run flow asks of the program around it: the window, the batch runner or a test.
class Frontend : public Screens {
public:
    // Lets the user set the options of the kind in `run`. False leaves everything as it is.
    virtual bool chooseOptions(AnalysisRun& run, const AnalysisKind& kind) = 0;
    // Lets the user enter the values of one page, from 0, or go back to what the page before it was given.
    virtual PredictionStep enterPrediction(const AnalysisRun& run, PredictionEntry& entry, int page) = 0;
    // Data was loaded or closed.
    virtual void setDataLoaded(bool loaded) = 0;
    virtual void enablePrediction(bool enabled) = 0;
    // The last analysis has columns to save, and a picture.
    virtual void enableResults([[maybe_unused]] bool columns, [[maybe_unused]] bool picture) {}
    // The graph stays as it is until closeGraph or the next analysis.
    virtual void openGraphWindow(const Graph& graph) = 0;
    virtual void closeGraph() = 0;
    // Reads the table of a data file.
    virtual FileCode readTable(const char* path, CellTable& cells, ReadingNotes& notes) {
        return readCsv(path, cells, notes);
    }
    // Reads the moments of a file; only who takes them has any.
    virtual FileCode readMoments([[maybe_unused]] const char* path, [[maybe_unused]] MomentTable& moments,
                                 [[maybe_unused]] ReadingNotes& notes) {
        return FileCode::notOpened;
    }
    // The workbook to load from, not connected; null where there is no spreadsheet link.
    virtual Workbook* workbook() { return nullptr; }
};
