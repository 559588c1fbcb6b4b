#pragma once

#include <cstdint>

#include "data/cell_table.h"
#include "numeric/block.h"

// Samples x variables doubles, row-major, with their names and labels.
struct DataMatrix {
    std::int32_t samples = 0;
    std::int32_t variables = 0;
    Block<double> values;
    Block<TextSlot> names;
    Block<TextSlot> labels;

    std::size_t count() const {
        return static_cast<std::size_t>(samples) * static_cast<std::size_t>(variables);
    }
};

// Ten columns of the cell table that the user keeps out; 0 excludes nothing.
struct ExclusionList {
    static constexpr int slotCount = 10;
    std::int32_t slots[slotCount];
    std::int32_t count; // columns really excluded: a column named twice counts once
};

// What the last fitted model leaves for prediction. The arrays have the size of the data set and come with
// it, so that keeping a model cannot fail; the explanatory variables stand in model order.
struct FittedModel {
    Block<double> coefficients;
    Block<double> means;
    Block<double> degrees;
    Block<double> values; // entered for the prediction
    Block<std::int32_t> variables;
    Block<std::int32_t> inModel;
    Block<char> title;
    Block<double> inverse; // of N times the covariance matrix of the model's variables
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
ErrorCode allocateDataSet(DataSet& data);

// Gives everything back but the path.
void releaseDataSet(DataSet& data);

// Fills the loaded part from the cells and the exclusion list, and selects its first variable.
void buildDataSet(DataSet& data);

// Undoes any reordering of the working part.
void copyLoadedToWorking(DataSet& data);

// Fills the working part with the unselected variables, then the selected ones, each in loaded order, and
// counts both.
void reorderWorkingBySelection(DataSet& data);

// Cells of used columns that hold no number, and where the first of them (row by row) stands.
struct BadCells {
    long long count;
    std::int32_t sample; // from 1
    const char* variable;
};
BadCells findBadCells(const DataSet& data);
