#pragma once

#include <span>

#include "analysis/run/analysis_run.h"

enum class OptionType {
    flag,         // a check box; an int32, 0 or 1
    choice,       // radio buttons in a row of identifiers; the int32 index of the chosen one
    listedChoice, // a drop-down list of `choices`; its int32 index, which the batch runner counts from 1
    wholeNumber,  // an edit with arrows, shown with "%5d"; an int32
    real,         // an edit with arrows, shown with "%5.3lf"; a double
    variable,     // a list of the variables, "(none)" first; an int32 that counts from 1, 0 for none
    variables,    // such lists in a row of identifiers; as many int32
};

// Which numbers a command line may give; what is typed into a dialog is taken as typed.
enum class OptionRange {
    any,
    arrows, // from `least` to `most`
    level,  // of significance: from 0, below 1
};

// One option of an analysis. The dialog, the batch runner with its help and the tests all read this record;
// adding an option is adding one.
struct OptionField {
    OptionType type;
    const char* name = nullptr; // in the batch runner, without "--"; null: an option of the dialog alone
    const char* help = nullptr;
    std::size_t offset; // of its value in AnalysisOptions
    int control;        // of the dialog: the box, the edit, the list or the first radio button
    int arrows = 0;     // the up-down control of an edit
    std::span<const char* const> choices = {}; // batch words of a choice, texts of a list
    int count = 1;                             // of lists
    // The arrows add the step below `most` and subtract it above `least`.
    double step = 1.0;
    double least = 0.0;
    double most = 0.0;
    double (*mostOfData)(const DataSet& data) = nullptr; // takes the place of `most`
    OptionRange range = OptionRange::any;
};

using OptionFields = std::span<const OptionField>;

std::int32_t& wholeOption(AnalysisOptions& options, const OptionField& field, int index = 0);
double& realOption(AnalysisOptions& options, const OptionField& field);

// A `mostOfData`: as many as there are variables.
double variableCount(const DataSet& data);

// What the edit of a number shows.
constexpr std::size_t optionTextSize = 340;
void showReal(double value, char (&text)[optionTextSize]);
void showOption(AnalysisOptions& options, const OptionField& field, char (&text)[optionTextSize]);

// Takes what is typed into the edit of a number: the number that the text begins with, else 0.
void typeOption(AnalysisOptions& options, const OptionField& field, const char* text);

// One click on the arrows of a number.
void spinOption(AnalysisOptions& options, const OptionField& field, const DataSet& data, bool up);
