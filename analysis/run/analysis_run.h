#pragma once

#include "analysis/run/picture.h"
#include "analysis/run/sample_columns.h"
#include "analysis/run/score_expressions.h"
#include "analysis/run/settings.h"
#include "data/data_set.h"
#include "numeric/numerics.h"
#include "report/graph_spec.h"
#include "report/report.h"

// The values of every option: the block of settings, then those that no settings file keeps. Plain, so that
// a dialog can work on a copy and throw it away.
struct AnalysisOptions {
    static constexpr int purposeCount = 9;
    static constexpr int slotCount = 10;

    Settings settings;
    // Variables of the loaded part from 1, 0 for none; taken from and put into the selection flags.
    std::int32_t purposes[purposeCount];
    // The variables that the first curve model raises to a degree, as purposes, and the degrees. Every load
    // resets them.
    std::int32_t slotColumns[slotCount];
    double slotDegrees[slotCount];
    std::int32_t similarityModel;      // added to kind 20
    std::int32_t quantification3Data;  // 0 categorical variables, 1 cross data
    std::int32_t quantification3Count; // of factors expected
    std::int32_t clusterCount;         // that samples are numbered by in a kept column; 0: none is kept
};

using PurposeList = std::int32_t[AnalysisOptions::purposeCount];

// The one run context: what the analyses read and write.
struct AnalysisRun {
    AnalysisOptions options = {};
    std::int32_t kind = 0; // menu command less 710
    Report report;
    DataSet data;
    Graph graph;                  // of the last analysis that has one
    SampleColumns columns;        // of the last analysis
    ScoreExpressions expressions; // likewise
    PictureWish pictureWish;
    Chart charts[PictureWish::most]; // of the last analysis: those that were wished for, in that order
    // What the dialogs that do not show the selected variables were last told; forgotten when the variables
    // change.
    PurposeList canonicalPurposes = {};
    PurposeList discriminantGroup = {};
    const Numerics* numerics = &classicNumerics; // what the engines compute with
    // Statistics of the last report that differ from a textbook's by more than their last digits.
    char deviations[260] = "";
    // The arguments of the batch runner that repeat the last analysis; empty when there are none.
    char repeating[6000] = "";
    bool isLinked = false;     // the data come from a spreadsheet's link
    bool takesMoments = false; // the data file holds moments
    // "scatter numbering" and "vector sizing" count for all graphs, not only those of components and factors.
    bool everyGraphTakesPreferences = false;
    // The status after opening tells how many samples are left out and how many doubts there are.
    bool statusTellsDoubts = false;
};

// Takes the settings over and gives the other options their first values.
void startOptions(AnalysisOptions& options, const Settings& settings);

// Gives every slot of the dialog of degrees its first values: no column, degree 1.
void resetSlots(AnalysisOptions& options);

using OwnPurposes = PurposeList AnalysisRun::*;

// Before the dialog: copies the purposes that the analysis keeps for itself, or else (own is null) the
// selected variables, into the options.
void takePurposes(AnalysisRun& run, OwnPurposes own);

// After it: selects the variables that the options name, and keeps them where `own` says.
void selectPurposes(AnalysisRun& run, OwnPurposes own);

// Clears what analyses keep for themselves.
void forgetPurposes(AnalysisRun& run);
