#include "analysis/categorical/quantification/quantification3.h"

#include <algorithm>
#include <cmath>

#include "analysis/categorical/quantification/category_names.h"
#include "analysis/run/run_report.h"
#include "analysis/run/score_charts.h"
#include "analysis/run/textbook_deviation.h"
#include "numeric/eigen.h"
#include "numeric/moments.h"
#include "report/category_rows.h"
#include "report/tables.h"

namespace {

constexpr std::int32_t categoricalVariables = 0;
constexpr double negligible = 1e-10; // of an eigenvalue, and of its distance to 1

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

bool isTable(const AnalysisOptions& options) {
    return options.quantification3Data != categoricalVariables;
}

// The table, N x K. Every row of it has as many cells that can differ from 0 as the data has variables: 1 in
// the column of the sample's category, or the values themselves.
struct ResponseTable {
    const DataMatrix& data;
    const CategoryLayout* layout; // null: the data as it stands

    Index rows() const { return data.samples; }
    Index columns() const { return layout != nullptr ? layout->totalCategories : data.variables; }
    Index cells() const { return data.variables; } // of a row
    const double* row(Index s) const { return data.row(s); }
    Index column(const double* row, Index cell) const {
        return layout != nullptr ? layout->first[cell] + static_cast<Index>(row[cell]) - 1 : cell;
    }
    double value(const double* row, Index cell) const { return layout != nullptr ? 1.0 : row[cell]; }
};

// Of rows (X) and columns (Y) of the table.
struct TableAssociation {
    double rows = 0.0;    // Re(X/Y)
    double columns = 0.0; // Re(Y/X)
    double cramer = 0.0;
};

// Up to F factors; entry 0 of the tests is for all of them, factor f has entry f. Of F columns the first
// `factors` are used.
struct Quantification3Work {
    Index factors = 0;        // those there are, up to F
    Block<double> rowSums;    // N
    Block<double> columnSums; // K
    double total = 0.0;
    Matrix matrix;               // K x K, then its eigenvectors
    Block<double> eigenvalues;   // K
    double eigenvalueSum = 0.0;  // of those that are not negligible
    Matrix columnWeights;        // K x F
    Matrix rowWeights;           // N x F
    Block<double> ratio;         // F
    Block<double> cumulative;    // F
    Block<double> chiSquare;     // F + 1
    Block<double> freedom;       // F + 1
    Block<double> probability;   // F + 1
    Block<double> columnSquares; // K: squares of the cells, each divided by the sum of its row
    TableAssociation association;

    // F is `asked`, but at least 1 and at most K. Returns success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(const ResponseTable& table, Index asked) {
        const Index rows = table.rows();
        const Index columns = table.columns();
        const Index most = std::min(std::max(asked, Index{1}), columns);
        return rowSums.allocate(rows) | columnSums.allocate(columns) | matrix.allocate(columns, columns) |
               eigenvalues.allocate(columns) | columnSquares.allocate(columns) |
               columnWeights.allocate(columns, most) | rowWeights.allocate(rows, most) |
               ratio.allocate(most) | cumulative.allocate(most) | chiSquare.allocate(most + 1) |
               freedom.allocate(most + 1) | probability.allocate(most + 1);
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
    for (Index s = 0; s < table.rows(); ++s) {
        if (!(work.rowSums[s] > 0.0)) continue;
        const double* row = table.row(s);
        for (Index i = 0; i < table.cells(); ++i) {
            double* const line = work.matrix.row(table.column(row, i));
            const double value = table.value(row, i);
            for (Index j = 0; j <= i; ++j) {
                line[table.column(row, j)] += value * table.value(row, j) / work.rowSums[s];
            }
        }
    }
    for (Index g = 0; g < work.matrix.rows(); ++g) {
        for (Index h = 0; h <= g; ++h) {
            double& element = work.matrix(g, h);
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
    const ErrorCode code = screens.setProgress(25);
    if (code != success) return code;
    if (!allFinite(work.matrix)) return eigenNotConvergent;
    return SymmetricEigen(work.matrix, work.eigenvalues, work.matrix);
}

void takeFactors(Quantification3Work& work) {
    Index present = 0;
    while (present < work.eigenvalues.size() && work.eigenvalues[present] > negligible) {
        work.eigenvalueSum += work.eigenvalues[present++];
    }
    work.factors = std::min(work.ratio.size(), present);
    double sum = 0.0;
    for (Index f = 0; f < work.factors; ++f) {
        work.ratio[f] = work.eigenvalues[f] / work.eigenvalueSum;
        work.cumulative[f] = sum += work.ratio[f];
    }
}

void weighColumns(Quantification3Work& work) {
    for (Index g = 0; g < work.columnWeights.rows(); ++g) {
        if (!(work.columnSums[g] > 0.0)) continue;
        const double scale = std::sqrt(work.total / work.columnSums[g]);
        for (Index f = 0; f < work.factors; ++f) work.columnWeights(g, f) = scale * work.matrix(g, f);
    }
}

void weighRows(const ResponseTable& table, Quantification3Work& work) {
    for (Index s = 0; s < table.rows(); ++s) {
        if (!(work.rowSums[s] > 0.0)) continue;
        const double* row = table.row(s);
        double* const weights = work.rowWeights.row(s);
        for (Index cell = 0; cell < table.cells(); ++cell) {
            const double share = table.value(row, cell) / work.rowSums[s];
            const double* ofColumn = work.columnWeights.row(table.column(row, cell));
            for (Index f = 0; f < work.factors; ++f) weights[f] += share * ofColumn[f];
        }
        for (Index f = 0; f < work.factors; ++f) weights[f] /= std::sqrt(work.eigenvalues[f]);
    }
}

// Bartlett's chi-square of each factor; that of the whole table is T times the sum of the eigenvalues.
void testFactors(const Numerics& numerics, const ResponseTable& table, Quantification3Work& work) {
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
    numerics.chiSquareTails(work.factors + 1, work.chiSquare.data(), work.freedom.data(),
                            work.probability.data());
}

// The term of a row or column with this sum: `squares` are those of its cells, each divided by the sum of its
// column or row.
double redundancyTerm(double squares, double sum, double total) {
    if (!(sum > 0.0) || total - sum == 0.0) return 0.0;
    return (squares / sum - sum / total) / (total - sum);
}

// Mean shares of what rows and columns explain, each divided by the total once more, and the square of
// Cramer's coefficient with the dimensions that the items leave.
TableAssociation redundancies(const ResponseTable& table, Quantification3Work& work) {
    TableAssociation association;
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
        association.rows += redundancyTerm(squares, rowSum, work.total);
    }
    for (Index g = 0; g < table.columns(); ++g) {
        association.columns += redundancyTerm(work.columnSquares[g], work.columnSums[g], work.total);
    }
    const Index columns = table.columns();
    const Index freeColumns = table.layout != nullptr ? columns - table.cells() + 1 : columns;
    const Index most = std::min(table.rows(), freeColumns);
    if (most > 1) association.cramer = work.eigenvalueSum / static_cast<double>(most - 1);
    return association;
}

// Of one direction, with sums of squared shares of the total: those within, and those of the margin alone.
double goodmanKruskalTau(double within, double margin) {
    return margin < 1.0 ? (within - margin) / (1.0 - margin) : 0.0;
}

struct Margin {
    Index present = 0;    // sums above 0
    double squares = 0.0; // of their shares of the total
};

Margin marginOf(const Block<double>& sums, double total) {
    Margin margin;
    for (const double sum : sums) {
        if (!(sum > 0.0)) continue;
        ++margin.present;
        margin.squares += sum / total * (sum / total);
    }
    return margin;
}

// Both tau of Goodman and Kruskal (1954), and V of Cramer (1946), of the table without its empty rows and
// columns.
TableAssociation textbookAssociation(const ResponseTable& table, const Quantification3Work& work) {
    TableAssociation association;
    if (!(work.total > 0.0)) return association;
    double byRows = 0.0, byColumns = 0.0; // squares of cells over the sum of their row and of their column
    double distances = 0.0, expectedSum = 0.0;
    for (Index s = 0; s < table.rows(); ++s) {
        const double* row = table.row(s);
        const double rowSum = work.rowSums[s];
        if (!(rowSum > 0.0)) continue;
        for (Index cell = 0; cell < table.cells(); ++cell) {
            const double columnSum = work.columnSums[table.column(row, cell)];
            if (!(columnSum > 0.0)) continue;
            const double value = table.value(row, cell);
            const double expected = rowSum * columnSum / work.total;
            if (!(expected > 0.0)) continue; // beyond the range of double
            byRows += value * value / rowSum;
            byColumns += value * value / columnSum;
            distances += (value - expected) * (value - expected) / expected;
            expectedSum += expected;
        }
    }
    // The cells of zeros that no sample names add what is expected of them.
    if (table.layout != nullptr) distances += work.total - expectedSum;
    const Margin rows = marginOf(work.rowSums, work.total);
    const Margin columns = marginOf(work.columnSums, work.total);
    const Index most = std::min(rows.present, columns.present);
    association.rows = goodmanKruskalTau(byColumns / work.total, rows.squares);
    association.columns = goodmanKruskalTau(byRows / work.total, columns.squares);
    if (most > 1) association.cramer = std::sqrt(distances / work.total / static_cast<double>(most - 1));
    return association;
}

ErrorCode compute(Screens& screens, const Numerics& numerics, const ResponseTable& table,
                  Quantification3Work& work) {
    ErrorCode code = screens.setProgress(10);
    if (code != success) return code;
    sumTable(table, work);
    code = decompose(screens, table, work);
    if (code == success) code = screens.setProgress(40);
    if (code != success) return code;
    takeFactors(work);
    weighColumns(work);
    weighRows(table, work);
    code = screens.setProgress(55);
    if (code != success) return code;
    testFactors(numerics, table, work);
    code = screens.setProgress(70);
    if (code != success) return code;
    work.association = numerics.textbook ? textbookAssociation(table, work) : redundancies(table, work);
    code = screens.setProgress(85);
    return code == success ? screens.setProgress(100) : code;
}

void noteDeviations(AnalysisRun& run, const ResponseTable& table, const Quantification3Work& work) {
    if (run.numerics->textbook) return;
    const TableAssociation textbook = textbookAssociation(table, work);
    if (deviates(work.association.rows, textbook.rows)) noteDeviation(run, "Re(X/Y)");
    if (deviates(work.association.columns, textbook.columns)) noteDeviation(run, "Re(Y/X)");
    if (deviates(work.association.cramer, textbook.cramer)) noteDeviation(run, "cramer r.c.");
    if (chiSquareTailsDeviate(work.factors + 1, work.chiSquare.data(), work.freedom.data(),
                              work.probability.data())) {
        noteDeviation(run, "chi.prob");
    }
}

constexpr ReportOpening ofCategories = {
    .title = "quantification 3 canonical correlation analysis statistics",
    .option = "-- due to categorical variable data",
    .status =
        "quantification 3 canonical correlation analysis statistics -- due to categorical variable data"};
constexpr ReportOpening ofCrossData = {
    .title = "quantification 3 canonical correlation analysis statistics",
    .option = "-- due to categorical cross data",
    .status = "quantification 3 canonical correlation analysis statistics -- due to categorical cross data"};

constexpr CellFormat redundancyCell = {15, 9};

void writeColumnWeights(Report& report, const DataSet& data, const ResponseTable& table,
                        const Quantification3Work& work) {
    writeCaption(report, "weight coefficient matrix of variable (column data)");
    if (table.layout != nullptr) {
        WriteFactorHeader(report, work.factors, report.formats.nameLength);
        writeCategoryRows(report, *table.layout, data.working.names, [&](Index g) {
            for (Index f = 0; f < work.factors; ++f) writeValue(report, work.columnWeights(g, f), 6);
        });
    } else {
        WriteFactorTable(report, work.columnWeights, work.factors, RowLabels("category"));
    }
    endTable(report);
}

void writeRowWeights(Report& report, const DataSet& data, const Quantification3Work& work) {
    writeCaption(report, "weight coefficient matrix of sample (row data)");
    WriteFactorTable(report, work.rowWeights, work.factors, data.working.labels);
    endTable(report);
}

void writeRedundancy(Report& report, const Quantification3Work& work) {
    writeCaption(report, "redundancy coefficient -- Re(X/Y),  Re(Y/X), cramer relation coefficient");
    writeCellRow(report, 1, "Re(X/Y)", work.association.rows, redundancyCell);
    writeCellRow(report, 2, "Re(Y/X)", work.association.columns, redundancyCell);
    writeCellRow(report, 3, "cramer r.c.", work.association.cramer, redundancyCell);
    endTable(report);
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
    writeCaption(report, "chi square test");
    writeCaption(report, "-- eigen value, ratio contributed, cummulative ratio, chi square, chi probability, "
                         "degree of freedom");
    startHeader(report);
    writeText(report, "all", width);
    for (Index f = 0; f < work.factors; ++f) writeText(report, numberedName("factor", f).text, width);
    endRow(report);
    Index number = 0;
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
    endTable(report);
}

void writeReport(AnalysisRun& run, const ResponseTable& table, const Quantification3Work& work) {
    Report& report = run.report;
    openReport(run, table.layout != nullptr ? ofCategories : ofCrossData);
    writeColumnWeights(report, run.data, table, work);
    writeRowWeights(report, run.data, work);
    writeRedundancy(report, work);
    writeTests(report, work);
}

// Eigenvalues that are not negligible; they descend.
Index countWeights(const Block<double>& eigenvalues) {
    return std::count_if(eigenvalues.begin(), eigenvalues.end(), [](double e) { return e > negligible; });
}

// Rows and columns together.
ErrorCode buildQuantification3Picture(AnalysisRun& run, const ResponseTable& table,
                                      const Quantification3Work& work) {
    TextList names;
    const TextView& variables = run.data.working.names;
    const ErrorCode code =
        table.layout != nullptr ? nameCategories(*table.layout, variables, names) : names.copy(variables);
    if (code != success) return code;
    return buildPicture<ScoreCharts>(run, {.title = "quantification 3",
                                           .axisName = "score",
                                           .scores = &work.rowWeights,
                                           .count = work.factors,
                                           .shares = work.ratio.data(),
                                           .others = &work.columnWeights,
                                           .otherNames = names,
                                           .othersName = table.layout != nullptr ? "categories" : "columns",
                                           .samplesName = table.layout != nullptr ? "samples" : "rows",
                                           .weights = work.eigenvalues.data(),
                                           .weightCount = countWeights(work.eigenvalues),
                                           .weightName = "eigenvalue"});
}

ErrorCode runQuantification3(Screens& screens, AnalysisRun& run) {
    const DataMatrix& data = run.data.working;
    const bool categorical = !isTable(run.options);
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

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, *run.numerics, table, work);
    screens.hideProgress();
    if (code != success) return code;

    noteDeviations(run, table, work);
    writeReport(run, table, work);
    code = keepNumbered(run.columns, "score ", work.rowWeights, work.factors);
    if (code == success) code = buildQuantification3Picture(run, table, work);
    if (code != success) return code;
    closeReport(screens, run.report);
    return success;
}

} // namespace

const Analysis quantification3 = {
    .fields = fields, .driver = runQuantification3, .isTable = isTable, .pictures = scorePictures};
