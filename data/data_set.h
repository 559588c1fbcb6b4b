#pragma once

#include <cstdint>

#include "data/cell_table.h"
#include "data/text_list.h"

// Samples x variables doubles, row-major, with their names and labels.
struct DataMatrix {
    std::int32_t samples = 0;
    std::int32_t variables = 0;
    Block<double> values;
    TextList names;
    TextList labels;

    Index count() const { return Index{samples} * variables; }
    const double* row(Index sample) const { return values.data() + sample * variables; }
    double at(Index sample, Index variable) const { return row(sample)[variable]; }
    const char* name(Index variable) const { return names[variable]; }
    const char* label(Index sample) const { return labels[sample]; }
};

// Ten columns of the cell table that the user keeps out; 0 excludes nothing.
struct ExclusionList {
    static constexpr int slotCount = 10;
    std::int32_t slots[slotCount];
    std::int32_t count; // columns really excluded: a column named twice counts once
};

// What the last fitted model leaves for prediction: a regression on (transformed) variables, or the
// quantities of categories. The arrays but the last have the size of the data set and come with it, so that
// keeping a regression cannot fail. Working columns keep their order as long as the model is there.
struct FittedModel {
    static constexpr std::int32_t none = -1;

    std::int32_t kind = none; // of the analysis that was run
    std::int32_t count = 0;   // explanatory variables in the model
    double constant = 0.0;
    double alpha = 0.0; // of the interval, 0 for none
    double residualVariance = 0.0;
    bool inverted = false; // `inverse` is made; else it holds the matrix to invert
    bool hasRoot = false;  // `inverse` holds a matrix whose transpose times itself is the inverse

    // In model order.
    Block<std::int32_t> variables; // their working columns
    Block<double> coefficients;
    Block<double> means;   // of the transformed variables
    Block<double> inverse; // of N times the covariance matrix of the transformed variables, count x count

    // By working column, without the purpose variable.
    Block<double> degrees;     // the power that a variable is raised to
    Block<double> startValues; // what a prediction starts from
    Block<std::int32_t>
        terms; // coefficients in the model: 0 or 1; the number of categories in a quantification

    Block<char> title; // of the model in a report

    Block<double> quantities; // of a quantification: of the categories, those of the first variable first,
                              // then two numbers that do not count in a prediction
};

constexpr std::size_t fittedModelTitleSize = 528;

// The one table of numbers that the program works on.
struct DataSet {
    CellTable cells;
    DataMatrix loaded;
    DataMatrix working; // what the analyses read; its columns may be reordered
    std::int32_t selectedCount = 0;
    std::int32_t otherCount = 0;
    Block<std::int32_t> selectionFlags; // index 1..variables of the loaded part: chosen as purpose
    Block<std::int32_t> useFlags;       // index 1..cols-1 of the cell table: not excluded
    ExclusionList exclusion = {};
    FittedModel model;
    char path[260] = "";
};

// Names cell (0,0) "(none)" and allocates everything that has the size of the cell table; success or
// outOfMemory (the data set is then empty).
[[nodiscard]] ErrorCode allocateDataSet(DataSet& data);

// Gives everything back but the path.
void releaseDataSet(DataSet& data);

// Fills the loaded part from the cells and the exclusion list, and selects its first variable. What a model
// left fits no longer.
void buildDataSet(DataSet& data);

// Undoes any reordering of the working part.
void copyLoadedToWorking(DataSet& data);

// Fills the working part with the unselected variables, then the selected ones, each in loaded order, and
// counts both.
void reorderWorkingBySelection(DataSet& data);

// Where a variable of the loaded part (from 1) stands in the reordered working part, from 0; -1 for a
// selected one.
std::int32_t otherColumnOf(const DataSet& data, std::int32_t variable);

// Cells of used columns that hold no number, and where the first of them (row by row) stands.
struct BadCells {
    long long count;
    std::int32_t sample; // from 1
    const char* variable;
};
BadCells findBadCells(const DataSet& data);
