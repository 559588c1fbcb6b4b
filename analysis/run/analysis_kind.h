#pragma once

#include "analysis/run/option_field.h"
#include "report/screens.h"

enum class GraphRule { never, always, threeGroups, threeVariables };

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
    // Where purposes stand that are not the selected variables: none after a load, so that a batch run must
    // name them.
    OwnPurposes ownPurposes = nullptr;

    // What a dialog of its own asks before the dialog of the kind. Nothing checks these fields, and the
    // command line has an option of its own for them.
    OptionFields firstFields = {};
    int firstDialog = 0;
    const char* firstTitle = nullptr;
};

// One item of the analysis menu. Menus, dispatch, the batch runner and the enabling rules read this record.
struct AnalysisKind {
    std::int32_t number; // menu command less 710
    const char* menuText;
    const char* batchName;
    int dialog;
    const char* dialogTitle;
    int saveBox;
    bool onMenu;    // false: its item is always greyed
    bool sizeCheck; // needs at least three samples more than variables
    GraphRule graph;
    bool enablesPrediction;
    const Analysis* analysis = nullptr; // null: there is no such model
    // A dialog of several kinds says in this control which one it is for.
    int headingControl = 0;
    const char* heading = nullptr;
};

constexpr int firstAnalysisCommand = 710;

// The first of three kinds that share a dialog, which chooses among them.
constexpr std::int32_t similarityKind = 20;
constexpr bool isSimilarity(std::int32_t kind) {
    return kind >= similarityKind && kind <= similarityKind + 2;
}

// All kinds in the order of the menu; the table stands in analysis/analysis_kinds.cpp.
std::span<const AnalysisKind> analysisKinds();

// The kind with this number or batch name, or null.
const AnalysisKind* findKind(std::int32_t number);
const AnalysisKind* findKind(const char* batchName);
