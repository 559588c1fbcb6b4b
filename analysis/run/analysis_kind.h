#pragma once

#include "analysis/run/kind_number.h"
#include "analysis/run/option_field.h"
#include "report/screens.h"

// When an analysis has a picture of the window.
enum class GraphRule { never, always, threeGroups, threeVariables }; // of so many and more

// What an analysis needs where moments stand in the place of samples, besides correlations.
enum MomentNeeds : unsigned {
    correlationsDo = 0,
    needsCount = 1, // the number of samples
    needsMeans = 2,
    needsDeviations = 4,
    needsGroups = 8, // all of it by group
};

// What an analysis brings. Drivers check the data, compute, write and show the report and status texts, and
// hand a graph description to buildGraph when the run wants one.
struct Analysis {
    OptionFields fields;
    ErrorCode (*driver)(Screens& screens, AnalysisRun& run);

    // Whether a field's control can be used with these values; null: all can.
    bool (*isEnabled)(const AnalysisOptions& options, const OptionField& field) = nullptr;
    // The alert that refuses these values, or null. `given` has a bit for each field that the command line
    // sets, and is 0 in the dialog.
    const char* (*refuse)(const AnalysisOptions& options, std::uint32_t given) = nullptr;
    // Whether the data are a table with these values, so that its rows are no samples that could be left out;
    // null: never.
    bool (*isTable)(const AnalysisOptions& options) = nullptr;
    // What moments must hold with these values; null: they never do.
    unsigned (*momentNeeds)(const AnalysisOptions& options) = nullptr;
    // Where purposes stand that are not the selected variables: none after a load, so that a batch run must
    // name them.
    OwnPurposes ownPurposes = nullptr;

    // What a dialog of its own asks before the dialog of the kind. Nothing checks these fields, and the
    // command line has an option of its own for them.
    OptionFields firstFields = {};
    int firstDialog = 0;
    const char* firstTitle = nullptr;

    // Whether it tells how to score samples elsewhere (analysis/run/score_expressions.h).
    bool hasExpressions = false;

    // What it can be drawn as besides the picture of the window, the one that is most asked for first.
    Pictures pictures = {};

    // A dialog that kinds share and that chooses among them: this option, added to the first of the kinds,
    // says which one is run. Null: the kind is what the menu says.
    std::int32_t AnalysisOptions::*chosenKind = nullptr;
    KindNumber firstKind = {};
};

// One item of the analysis menu. Menus, dispatch, the batch runner and the enabling rules read this record.
struct AnalysisKind {
    KindNumber number;
    const char* menuText;
    const char* batchName = "";
    const char* batchTitle = ""; // what it is in a few plain words
    const char* example = "";    // arguments behind the name that make a report of a file of samples/
    int dialog = 0;
    const char* dialogTitle = "";
    int saveBox = 0;
    const Analysis* analysis = nullptr; // null: there is no such model
    bool onMenu = true;                 // false: its item is always greyed
    bool sizeCheck = true;              // needs leastExcess samples more than variables
    GraphRule graph = GraphRule::never;
    bool hasSampleColumns = false; // keeps something about each sample (analysis/run/sample_columns.h)
    bool hasPictures = true;       // those of its analysis
    bool enablesPrediction = false;
    // A dialog of several kinds says in this control which one it is for.
    int headingControl = 0;
    const char* heading = nullptr;
};

constexpr int leastExcess = 3; // of samples over variables

constexpr int firstAnalysisCommand = 710;

// All kinds in the order of the menu; the table stands in analysis/analysis_kinds.cpp.
std::span<const AnalysisKind> analysisKinds();

// The pictures of a kind besides that of the window.
inline Pictures picturesOf(const AnalysisKind& kind) {
    return kind.analysis != nullptr && kind.hasPictures ? kind.analysis->pictures : Pictures{};
}

// The kind with this number or batch name, or null.
const AnalysisKind* findKind(std::int32_t number);
const AnalysisKind* findKind(const char* batchName);
