#include "data/data_set.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <initializer_list>

#include "data/number.h"

namespace {

// `columns` is cols - 1, the most variables there can be.
ErrorCode allocateModel(FittedModel& model, Index columns) {
    return model.variables.allocate(columns) | model.coefficients.allocate(columns) |
           model.means.allocate(columns) | model.inverse.allocate(columns * columns) |
           model.degrees.allocate(columns) | model.startValues.allocate(columns) |
           model.terms.allocate(columns) | model.title.allocate(fittedModelTitleSize);
}

// The value of a cell; false when it is missing, which is counted.
bool takeCell(const CellTable& cells, std::int32_t row, std::int32_t col, double& value,
              MissingCells& missing) {
    static_assert(TextList::spare >= bytesBehindNumber);
    if (!readCellNumber(cells.cell(row, col), value)) {
        if (missing.notNumbers++ == 0) missing.firstNotNumber = row;
        return false;
    }
    if (!std::isfinite(value)) {
        if (missing.notFinite++ == 0) missing.firstNotFinite = row;
        return false;
    }
    return true;
}

// Names and labels stand in the cell table.
void nameLoaded(DataSet& data) {
    const TextPlaces texts = data.cells.texts.places();
    const Index cols = data.cells.cols, stride = data.cells.isReduced ? 1 : cols;
    DataMatrix& loaded = data.loaded;
    const std::int32_t* const columns = data.loadedColumns.data();
    loaded.names = TextView::chosen(texts, columns, loaded.variables, 0, 1);
    loaded.labels = data.leftOut > 0 ? TextView::chosen(texts, data.loadedRows.data(), loaded.samples,
                                                        cols - stride, stride)
                                     : TextView::every(texts, loaded.samples, cols, stride);
}

void showLoaded(DataSet& data, std::int32_t samples, std::int32_t variables) {
    DataMatrix& loaded = data.loaded;
    loaded.samples = samples;
    loaded.variables = variables;
    nameLoaded(data);
    loaded.columns = data.loadedColumns.data();
    loaded.moments = data.moments.isEmpty() ? nullptr : &data.moments;
    loaded.values = {data.loadedValues.data(), static_cast<std::size_t>(loaded.count())};
    if (loaded.moments == nullptr) return;
    loaded.samples = static_cast<std::int32_t>(data.moments.samples());
    data.leftOut = static_cast<std::int32_t>(data.moments.leftOut);
}

// Loaded columns, from 0: the unselected ones, then the selected ones. Counts both.
void orderBySelection(DataSet& data, Block<std::int32_t>& order) {
    std::int32_t column = 0;
    for (const bool selected : {false, true}) {
        for (std::int32_t v = 0; v < data.loaded.variables; ++v) {
            if ((data.selectionFlags[v + 1] != 0) == selected) order[column++] = v;
        }
        if (!selected) data.otherCount = column;
    }
    data.selectedCount = column - data.otherCount;
}

} // namespace

const char* fileName(const DataSet& data) {
    const char* const separator = std::strrchr(data.path, '\\');
    return separator != nullptr ? separator + 1 : data.path;
}

ErrorCode allocateDataSet(DataSet& data) {
    data.cells.texts.replace(0, "(none)");
    const Index cols = data.cells.cols;
    const Index samples = data.cells.rows - 1;
    const ErrorCode code = data.selectionFlags.allocate(cols) | data.useFlags.allocate(cols) |
                           data.missing.allocate(cols) | data.loadedValues.allocate(samples * (cols - 1)) |
                           data.loadedColumns.allocate(cols - 1) | data.loadedRows.allocate(samples) |
                           data.reorderedColumns.allocate(cols - 1) | allocateModel(data.model, cols - 1);
    if (code != success) releaseDataSet(data);
    return code;
}

ErrorCode nameMoments(DataSet& data) {
    const MomentTable& moments = data.moments;
    const std::int32_t variables = moments.variables;
    data.cells.rows = 1;
    data.cells.isOfEngine = true;
    data.cells.cols = variables + 1 + (moments.isGrouped ? 1 : 0);
    if (data.cells.texts.allocate(data.cells.cols) != success) return outOfMemory;
    data.cells.texts.setReplaceable(0, "");
    for (std::int32_t v = 0; v < variables; ++v) data.cells.texts.set(v + 1, moments.names[v]);
    if (moments.isGrouped) data.cells.texts.set(variables + 1, moments.groupName);
    return success;
}

void releaseDataSet(DataSet& data) {
    data.cells = {};
    data.moments = {};
    data.loaded = {};
    data.working = {};
    data.loadedValues.release();
    data.loadedColumns.release();
    data.loadedRows.release();
    data.reorderedValues.release();
    data.reorderedColumns.release();
    data.selectionFlags.release();
    data.useFlags.release();
    data.missing.release();
    data.notes = {};
    data.leftOut = 0;
    data.exclusion = {};
    data.model = {};
    data.selectedCount = 0;
    data.otherCount = 0;
}

void buildDataSet(DataSet& data) {
    const CellTable& cells = data.cells;
    for (std::int32_t& used : data.useFlags) used = 1;
    data.exclusion.count = 0;
    for (const std::int32_t column : data.exclusion.slots) {
        if (column <= 0 || column >= cells.cols) continue;
        std::int32_t& used = data.useFlags[column];
        data.exclusion.count += used;
        used = 0;
    }

    std::int32_t variables = 0;
    for (std::int32_t j = 1; j < cells.cols; ++j) {
        if (data.useFlags[j] != 0) data.loadedColumns[variables++] = j;
    }
    for (MissingCells& missing : data.missing) missing = {};
    std::int32_t samples = 0;
    for (std::int32_t row = 1; row < cells.rows; ++row) {
        double* const values = data.loadedValues.data() + Index{samples} * variables;
        bool whole = true;
        for (std::int32_t v = 0; v < variables; ++v) {
            const std::int32_t j = data.loadedColumns[v];
            if (!takeCell(cells, row, j, values[v], data.missing[j])) whole = false;
        }
        if (!whole && data.policy == MissingPolicy::omit) continue;
        if (data.policy == MissingPolicy::omit) data.loadedRows[samples] = row;
        ++samples;
    }
    data.leftOut = cells.rows - 1 - samples;
    showLoaded(data, samples, variables);

    for (std::int32_t& flag : data.selectionFlags) flag = 0;
    if (cells.cols > 1) data.selectionFlags[1] = 1;
    data.model.kind = FittedModel::none;
}

bool isLeftOut(const DataSet& data, std::int32_t row) {
    if (data.leftOut == 0) return false; // whatever the policy is by now
    MissingCells missing = {};
    double value = 0.0;
    for (std::int32_t j = 1; j < data.cells.cols; ++j) {
        if (data.useFlags[j] != 0 && !takeCell(data.cells, row, j, value, missing)) return true;
    }
    return false;
}

ErrorCode keepNumbersAlone(DataSet& data) {
    const ErrorCode code = reduceToLabels(data.cells);
    if (code != success) return code;
    nameLoaded(data);
    copyLoadedToWorking(data);
    return success;
}

void copyLoadedToWorking(DataSet& data) {
    data.reorderedValues.release();
    data.working = data.loaded;
}

ErrorCode reorderWorkingBySelection(DataSet& data) {
    const DataMatrix& loaded = data.loaded;
    copyLoadedToWorking(data);
    Block<std::int32_t>& order = data.reorderedColumns;
    orderBySelection(data, order);
    if (std::is_sorted(order.begin(), order.begin() + loaded.variables)) return success;
    if (data.reorderedValues.allocate(loaded.count()) != success) return outOfMemory;
    double* value = data.reorderedValues.data();
    for (std::int32_t s = 0; s < loaded.rows(); ++s) {
        const double* const row = loaded.row(s);
        for (std::int32_t k = 0; k < loaded.variables; ++k) *value++ = row[order[k]];
    }
    for (std::int32_t k = 0; k < loaded.variables; ++k) order[k] = data.loadedColumns[order[k]];
    data.working.values = {data.reorderedValues.data(), loaded.values.size()};
    data.working.columns = order.data();
    data.working.names = TextView::chosen(data.cells.texts.places(), order.data(), loaded.variables, 0, 1);
    return success;
}

std::int32_t otherColumnOf(const DataSet& data, std::int32_t variable) {
    const std::int32_t* flags = data.selectionFlags.data();
    if (flags[variable] != 0) return -1;
    return static_cast<std::int32_t>(std::count(flags + 1, flags + variable, 0));
}

std::int32_t cellColumnOf(const DataSet& data, std::int32_t variable) {
    std::int32_t column = 0;
    while (variable > 0 && ++column < data.cells.cols) variable -= data.useFlags[column];
    return column;
}

BadCells findBadCells(const DataSet& data, Doubt kind) {
    BadCells found;
    if (data.policy == MissingPolicy::omit) return found;
    for (std::int32_t col = 1; col < data.cells.cols; ++col) {
        const MissingCells& missing = data.missing[col];
        const bool infinite = kind == Doubt::infinite;
        const long long count = infinite ? missing.notFinite : missing.notNumbers;
        const std::int32_t row = infinite ? missing.firstNotFinite : missing.firstNotNumber;
        if (count > 0 && (found.count == 0 || row < found.row)) {
            found.row = row;
            found.variable = data.cells.cell(0, col);
        }
        found.count += count;
    }
    return found;
}

DoubtCount findDoubt(const DataSet& data, Doubt kind) {
    const Doubts& doubts = data.notes.doubts;
    if (kind != Doubt::noNumbers && kind != Doubt::infinite) return doubts[kind];
    const BadCells bad = findBadCells(data, kind);
    return {bad.count, bad.count > 0 && doubts.hasLines ? lineOfRow(doubts, bad.row) : 0};
}
