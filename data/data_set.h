#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "data/cell_table.h"
#include "data/reading_notes.h"

// Samples x variables doubles, row-major, with their names and labels, which are those of the cell table; or
// the moments of samples that stand elsewhere. All of it is kept by the data set.
struct DataMatrix {
    std::int32_t samples = 0;
    std::int32_t variables = 0;
    std::span<const double> values;
    TextView names;
    TextView labels;
    const MomentTable* moments = nullptr;  // in the place of values and labels
    const std::int32_t* columns = nullptr; // of the cell table, of each variable

    // Samples that are here.
    std::int32_t rows() const { return moments != nullptr ? 0 : samples; }
    Index count() const { return Index{rows()} * variables; }
    const double* row(Index sample) const { return values.data() + sample * variables; }
    double at(Index sample, Index variable) const { return row(sample)[variable]; }
    const char* name(Index variable) const { return names[variable]; }
    const char* label(Index sample) const { return labels[sample]; }
};

// Bytes of a path and its end, as many as Windows takes.
constexpr std::size_t pathSize = 260;

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
    Block<std::int32_t> terms; // coefficients in the model: 0 or 1; in a quantification its categories

    Block<char> title; // of the model in a report

    Block<double> quantities; // of a quantification: of the categories, those of the first variable first,
                              // then two numbers that do not count in a prediction
};

constexpr std::size_t fittedModelTitleSize = 528;

// What is done about cells that are missing: those that hold no number, or one that is not finite.
enum class MissingPolicy {
    zero, // they count as what they begin with, or 0
    omit, // samples with such a cell in a variable in use are left out
    fail, // as zero; the caller ends the run
};

// Cells of a column that are missing, and the rows of the cell table that have the first of them.
struct MissingCells {
    long long notNumbers;
    long long notFinite;
    std::int32_t firstNotNumber;
    std::int32_t firstNotFinite;

    long long count() const { return notNumbers + notFinite; }
};

// The one table of numbers that the program works on.
struct DataSet {
    CellTable cells;
    MomentTable moments; // in the place of cells but those of the header
    DataMatrix loaded;
    DataMatrix working; // what the analyses read: the loaded part, or its columns in another order
    Block<double> loadedValues;
    Block<std::int32_t> loadedColumns; // of the cell table, of each variable
    Block<std::int32_t> loadedRows;    // of the cell table, of each sample; in use when some are left out
    Block<double> reorderedValues;     // while the working part has an order of its own
    Block<std::int32_t> reorderedColumns;
    std::int32_t selectedCount = 0;
    std::int32_t otherCount = 0;
    Block<std::int32_t> selectionFlags; // index 1..variables of the loaded part: chosen as purpose
    Block<std::int32_t> useFlags;       // index 1..cols-1 of the cell table: not excluded
    Block<MissingCells> missing;        // index 1..cols-1: of the columns in use, left out or not
    ExclusionList exclusion = {};
    MissingPolicy policy = MissingPolicy::zero;
    std::int32_t leftOut = 0; // samples, by the policy
    ReadingNotes notes;       // of the file that was read last
    FittedModel model;
    char path[pathSize] = "";
};

// The name of the data's file without its folder.
const char* fileName(const DataSet& data);

// Names cell (0,0) "(none)" and allocates everything that has the size of the cell table; success or
// outOfMemory (the data set is then empty).
[[nodiscard]] ErrorCode allocateDataSet(DataSet& data);

// Makes the header of the cell table from the names of the moments, those of groups with their variable
// behind the others; success or outOfMemory.
[[nodiscard]] ErrorCode nameMoments(DataSet& data);

// Gives everything back but the path and the policy.
void releaseDataSet(DataSet& data);

// Fills the loaded part from the cells, the exclusion list and the policy, counts missing cells, and selects
// the first variable. What a model left fits no longer.
void buildDataSet(DataSet& data);

// Whether the sample of a row of the cell table was left out when the loaded part was filled.
bool isLeftOut(const DataSet& data, std::int32_t row);

// Gives the memory of the cells' texts back, but for names and labels, for who does not load or save from the
// cells again, nor groups samples by them. Undoes any reordering. Success or outOfMemory (all is there then).
[[nodiscard]] ErrorCode keepNumbersAlone(DataSet& data);

// Undoes any reordering of the working part, which is then the loaded one.
void copyLoadedToWorking(DataSet& data);

// Gives the working part the unselected variables, then the selected ones, each in loaded order, and counts
// both. Only another order than the loaded one needs memory of its own: success or outOfMemory.
[[nodiscard]] ErrorCode reorderWorkingBySelection(DataSet& data);

// Where a variable of the loaded part (from 1) stands in the reordered working part, from 0; -1 for a
// selected one.
std::int32_t otherColumnOf(const DataSet& data, std::int32_t variable);

// The column of the cell table that a variable of the loaded part (from 1) stands in; cells.cols without one.
std::int32_t cellColumnOf(const DataSet& data, std::int32_t variable);

// Cells of used columns that are doubted for what they hold, and where the first of them (row by row) stands.
struct BadCells {
    long long count = 0;
    std::int32_t row = 0; // of the cell table, which is the number of the sample in the file
    const char* variable = "";
};
// Of one of the two kinds of missing cells: Doubt::noNumbers or Doubt::infinite. There are none where the
// policy leaves their samples out.
BadCells findBadCells(const DataSet& data, Doubt kind);

// How often there is a doubt about the data in use, and the first line of the file that it is about (0 where
// there is no file).
DoubtCount findDoubt(const DataSet& data, Doubt kind);
