#include "analysis/categorical/quantification/quantification3.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "analysis/run/run_report.h"
#include "numeric/distributions.h"
#include "numeric/eigen.h"
#include "numeric/moments.h"
#include "report/category_rows.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

constexpr std::int32_t categoricalVariables = 0;
constexpr std::int32_t leastExcess = 3; // of samples over categorical variables
constexpr double negligible = 1e-10;    // of an eigenvalue, and of its distance to 1

constexpr const char* dataModes[] = {"variable", "cross"};

const OptionField fields[] = {
    {.type = OptionType::choice,
     .name = "data",
     .help = "categorical variables or a table of frequencies",
     .offset = offsetof(AnalysisOptions, quantification3Data),
     .control = 3301,
     .choices = dataModes},
    {.type = OptionType::wholeNumber,
     .name = "factors",
     .help = "how many factors to print",
     .offset = offsetof(AnalysisOptions, quantification3Count),
     .control = 3303,
     .arrows = 3304,
     .least = 1.0,
     .mostOfData = variableCount},
};

// The table, N x K. Every row of it has as many cells that can differ from 0 as the data has variables: 1 in
// the column of the sample's category, or the values themselves.
struct ResponseTable {
    const DataMatrix& data;
    const CategoryLayout* layout; // null: the data as it stands

    Index rows() const { return data.samples; }
    Index columns() const { return (layout != nullptr ? layout->totalCategories : data.variables); }
    Index cells() const { return data.variables; } // of a row
    const double* row(Index s) const { return data.values.data() + s * cells(); }
    Index column(const double* row, Index cell) const {
        return layout != nullptr ? layout->first[cell] + static_cast<Index>(row[cell]) - 1 : cell;
    }
    double value(const double* row, Index cell) const { return layout != nullptr ? 1.0 : row[cell]; }
};

// Up to F factors; entry 0 of the tests is for all of them, factor f has entry f.
struct Quantification3Work {
    Index factorsAsked = 0;   // F
    Index factors = 0;        // those there are, up to F
    Block<double> rowSums;    // N
    Block<double> columnSums; // K
    double total = 0.0;
    Block<double> matrix;        // K x K, then its eigenvectors
    Block<double> eigenvalues;   // K
    double eigenvalueSum = 0.0;  // of those that are not negligible
    Block<double> columnWeights; // K x F
    Block<double> rowWeights;    // N x F
    Block<double> ratio;         // F
    Block<double> cumulative;    // F
    Block<double> chiSquare;     // F + 1
    Block<double> freedom;       // F + 1
    Block<double> probability;   // F + 1
    Block<double> columnSquares; // K: squares of the cells, each divided by the sum of its row
    double rowRedundancy = 0.0;
    double columnRedundancy = 0.0;
    double cramer = 0.0;

    ErrorCode allocate(const ResponseTable& table, std::int32_t asked) {
        const Index columns = table.columns();
        factorsAsked = std::min<Index>(std::max(asked, 1), columns);
        return rowSums.allocate(table.rows()) | columnSums.allocate(columns) |
               matrix.allocate(columns * columns) | eigenvalues.allocate(columns) |
               columnSquares.allocate(columns) | columnWeights.allocate(columns * factorsAsked) |
               rowWeights.allocate(table.rows() * factorsAsked) | ratio.allocate(factorsAsked) |
               cumulative.allocate(factorsAsked) | chiSquare.allocate(factorsAsked + 1) |
               freedom.allocate(factorsAsked + 1) | probability.allocate(factorsAsked + 1);
    }
};

void sumTable(const ResponseTable& table, Quantification3Work& work) {
    for (Index s = 0; s < table.rows(); ++s) {
        const double* row = table.row(s);
        for (Index cell = 0; cell < table.cells(); ++cell) {
            const double value = table.value(row, cell);
            work.rowSums[s] += value;
            work.columnSums[table.column(row, cell)] += value;
        }
        work.total += work.rowSums[s];
    }
}

// The lower triangle of S(g,h) = sum of x_sg x_sh / r_s over the rows / sqrt(c_g c_h) - sqrt(c_g c_h) / T,
// whose last term takes the trivial solution away. Rows and columns whose sum is not above 0 add nothing.
void fillMatrix(const ResponseTable& table, Quantification3Work& work) {
    const Index columns = table.columns();
    for (Index s = 0; s < table.rows(); ++s) {
        if (!(work.rowSums[s] > 0.0)) continue;
        const double* row = table.row(s);
        for (Index i = 0; i < table.cells(); ++i) {
            double* const line = work.matrix.data() + table.column(row, i) * columns;
            const double value = table.value(row, i);
            for (Index j = 0; j <= i; ++j) {
                line[table.column(row, j)] += value * table.value(row, j) / work.rowSums[s];
            }
        }
    }
    for (Index g = 0; g < columns; ++g) {
        for (Index h = 0; h <= g; ++h) {
            double& element = work.matrix[g * columns + h];
            if (work.columnSums[g] > 0.0 && work.columnSums[h] > 0.0) {
                const double root = std::sqrt(work.columnSums[g] * work.columnSums[h]);
                element = element / root - root / work.total;
            } else {
                element = 0.0;
            }
        }
    }
}

// Without a total above 0 there are no eigenvalues.
ErrorCode decompose(Screens& screens, const ResponseTable& table, Quantification3Work& work) {
    if (work.total <= 0.0) return success;
    fillMatrix(table, work);
    screens.setProgress(25);
    if (!allFinite(work.matrix.data(), work.matrix.size())) return eigenNotConvergent;
    const int columns = static_cast<int>(table.columns());
    return SymmetricEigen(columns, columns, work.matrix.data(), work.eigenvalues.data(), work.matrix.data());
}

void takeFactors(Quantification3Work& work) {
    Index present = 0;
    while (present < work.eigenvalues.size() && work.eigenvalues[present] > negligible) {
        work.eigenvalueSum += work.eigenvalues[present++];
    }
    work.factors = std::min(work.factorsAsked, present);
    double sum = 0.0;
    for (Index f = 0; f < work.factors; ++f) {
        work.ratio[f] = work.eigenvalues[f] / work.eigenvalueSum;
        work.cumulative[f] = sum += work.ratio[f];
    }
}

void weighColumns(const ResponseTable& table, Quantification3Work& work) {
    const Index columns = table.columns();
    for (Index g = 0; g < columns; ++g) {
        if (!(work.columnSums[g] > 0.0)) continue;
        const double scale = std::sqrt(work.total / work.columnSums[g]);
        for (Index f = 0; f < work.factors; ++f) {
            work.columnWeights[g * work.factorsAsked + f] = scale * work.matrix[g * columns + f];
        }
    }
}

void weighRows(const ResponseTable& table, Quantification3Work& work) {
    for (Index s = 0; s < table.rows(); ++s) {
        if (!(work.rowSums[s] > 0.0)) continue;
        const double* row = table.row(s);
        double* const weights = work.rowWeights.data() + s * work.factorsAsked;
        for (Index cell = 0; cell < table.cells(); ++cell) {
            const double share = table.value(row, cell) / work.rowSums[s];
            const double* ofColumn = work.columnWeights.data() + table.column(row, cell) * work.factorsAsked;
            for (Index f = 0; f < work.factors; ++f) weights[f] += share * ofColumn[f];
        }
        for (Index f = 0; f < work.factors; ++f) weights[f] /= std::sqrt(work.eigenvalues[f]);
    }
}

// Bartlett's chi-square of each factor; that of the whole table is T times the sum of the eigenvalues.
void testFactors(const ResponseTable& table, Quantification3Work& work) {
    const double rows = static_cast<double>(table.rows());
    const double columns = static_cast<double>(table.columns());
    const double scale = work.total - 1.0 - (rows + columns - 1.0) * 0.5;
    for (Index f = 1; f <= work.factors; ++f) {
        const double eigenvalue = work.eigenvalues[f - 1];
        work.chiSquare[f] = eigenvalue > 1.0 - negligible ? 0.0 : -scale * std::log(1.0 - eigenvalue);
        work.freedom[f] = rows - 2.0 * static_cast<double>(f) + columns - 1.0;
    }
    work.chiSquare[0] = work.total * work.eigenvalueSum;
    work.freedom[0] = (rows - 1.0) * (columns - 1.0);
    ChiSquareUpperProbability(static_cast<int>(work.factors + 1), work.chiSquare.data(), work.freedom.data(),
                              work.probability.data());

    const double freeColumns =
        table.layout != nullptr ? columns - static_cast<double>(table.cells()) + 1.0 : columns;
    const double most = std::min(rows, freeColumns);
    work.cramer = most > 1.0 ? work.eigenvalueSum / (most - 1.0) : 0.0;
}

// The term of a row or column with this sum: `squares` are those of its cells, each divided by the sum of its
// column or row.
double redundancyTerm(double squares, double sum, double total) {
    if (!(sum > 0.0) || total - sum == 0.0) return 0.0;
    return (squares / sum - sum / total) / (total - sum);
}

void measureRedundancy(Screens& screens, const ResponseTable& table, Quantification3Work& work) {
    for (Index s = 0; s < table.rows(); ++s) {
        const double* row = table.row(s);
        const double rowSum = work.rowSums[s];
        double squares = 0.0;
        for (Index cell = 0; cell < table.cells(); ++cell) {
            const double value = table.value(row, cell);
            const Index column = table.column(row, cell);
            if (work.columnSums[column] > 0.0) squares += value * value / work.columnSums[column];
            if (rowSum > 0.0) work.columnSquares[column] += value * value / rowSum;
        }
        work.rowRedundancy += redundancyTerm(squares, rowSum, work.total);
    }
    screens.setProgress(85);
    for (Index g = 0; g < table.columns(); ++g) {
        work.columnRedundancy += redundancyTerm(work.columnSquares[g], work.columnSums[g], work.total);
    }
    screens.setProgress(100);
}

ErrorCode compute(Screens& screens, const ResponseTable& table, Quantification3Work& work) {
    screens.setProgress(10);
    sumTable(table, work);
    const ErrorCode code = decompose(screens, table, work);
    if (code != success) return code;
    screens.setProgress(40);
    takeFactors(work);
    weighColumns(table, work);
    weighRows(table, work);
    screens.setProgress(55);
    testFactors(table, work);
    screens.setProgress(70);
    measureRedundancy(screens, table, work);
    return success;
}

void writeColumnWeights(Report& report, const DataSet& data, const ResponseTable& table,
                        const Quantification3Work& work) {
    const int factors = static_cast<int>(work.factors);
    report.lower.append("\tweight coefficient matrix of variable (column data)\n");
    WriteFactorHeader(report, factors, report.formats.nameLength);
    const auto weightsOf = [&](Index g) { return work.columnWeights.data() + g * work.factorsAsked; };
    if (table.layout != nullptr) {
        writeCategoryRows(report, *table.layout, data.working.names, [&](Index g) {
            for (int f = 0; f < factors; ++f) writeValue(report, weightsOf(g)[f], 6);
        });
    } else {
        char label[32];
        for (int g = 0; g < data.working.variables; ++g) {
            std::snprintf(label, sizeof label, "category %d", g + 1);
            WriteValueRow(report, weightsOf(g), factors, 6, label, g + 1);
        }
    }
    report.lower.append("\n");
}

void writeRowWeights(Report& report, const DataSet& data, const Quantification3Work& work) {
    report.lower.append("\tweight coefficient matrix of sample (row data)\n");
    WriteFactorTable(report, data.working.samples, static_cast<int>(work.factors), work.rowWeights.data(),
                     static_cast<int>(work.factorsAsked), data.working.labels);
    report.lower.append("\n");
}

void writeRedundancy(Report& report, const Quantification3Work& work) {
    const struct {
        const char* label;
        double value;
    } rows[] = {
        {"Re(X/Y)", work.rowRedundancy}, {"Re(Y/X)", work.columnRedundancy}, {"cramer r.c.", work.cramer}};
    report.lower.append("\tredundancy coefficient -- Re(X/Y),  Re(Y/X), cramer relation coefficient\n");
    int number = 0;
    for (const auto& row : rows) {
        startRow(report, ++number, row.label);
        writeCell(report, row.value, {15, 9});
        endRow(report);
    }
    report.lower.append("\n");
}

void writeTests(Report& report, const Quantification3Work& work) {
    const struct {
        const char* label;
        const double* ofFactors; // factor 1 first
        const double* ofAll;     // null: an empty cell
        int slot;
    } rows[] = {
        {"eigen", work.eigenvalues.data(), nullptr, 6},
        {"ratio.c", work.ratio.data(), nullptr, 6},
        {"c.ratio", work.cumulative.data(), nullptr, 6},
        {"chi.square", work.chiSquare.data() + 1, work.chiSquare.data(), 6},
        {"chi.prob", work.probability.data() + 1, work.probability.data(), 6},
        {"chi.free", work.freedom.data() + 1, work.freedom.data(), 0},
    };
    const int width = report.formats.nameLength;
    report.lower.append(
        "\tchi square test\n\t-- eigen value, ratio contributed, cummulative ratio, chi square, chi "
        "probability, degree of freedom\n");
    char heading[32];
    startHeader(report);
    writeText(report, "all", width);
    for (Index f = 1; f <= work.factors; ++f) {
        std::snprintf(heading, sizeof heading, "factor %d", static_cast<int>(f));
        writeText(report, heading, width);
    }
    endRow(report);
    int number = 0;
    for (const auto& row : rows) {
        startRow(report, ++number, row.label);
        if (row.ofAll != nullptr) {
            writeValue(report, *row.ofAll, row.slot);
        } else {
            writeText(report, "", report.formats.width);
        }
        for (Index f = 0; f < work.factors; ++f) writeValue(report, row.ofFactors[f], row.slot);
        endRow(report);
    }
    report.lower.append("\n");
}

void writeReport(Screens& screens, AnalysisRun& run, const ResponseTable& table,
                 const Quantification3Work& work) {
    const Settings& settings = run.options.settings;
    const char* source = table.layout != nullptr ? "categorical variable" : "categorical cross";
    Report& report = run.report;
    report.lower.clear();
    report.lower.appendFormat(
        "\nquantification 3 canonical correlation analysis statistics\n-- due to %s data\n\n", source);
    report.status.clear();
    report.status.appendFormat(
        "status : quantification 3 canonical correlation analysis statistics -- due to %s data", source);

    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);
    writeColumnWeights(report, run.data, table, work);
    writeRowWeights(report, run.data, work);
    writeRedundancy(report, work);
    writeTests(report, work);
    closeReport(screens, report);
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    const DataMatrix& data = run.data.working;
    const bool categorical = run.options.quantification3Data == categoricalVariables;
    CategoryLayout layout;
    if (categorical) {
        if (data.samples - data.variables < leastExcess) return tooFewSamples;
        const ErrorCode code = CategoricalCheck(data, data.variables, layout);
        if (code != success) return code;
    }
    const ResponseTable table = {data, categorical ? &layout : nullptr};
    Quantification3Work work;
    ErrorCode code = work.allocate(table, run.options.quantification3Count);
    if (code != success) return code;

    startProgress(screens, run.report);
    code = compute(screens, table, work);
    screens.hideProgress();
    if (code != success) return code;
    writeReport(screens, run, table, work);
    return success;
}

} // namespace

const Analysis quantification3 = {.fields = fields, .driver = run};
