#include "analysis/categorical/quantification/quantification1.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "analysis/run/fit_charts.h"
#include "analysis/run/run_report.h"
#include "analysis/run/score_graph.h"
#include "data/category_cross_table.h"
#include "numeric/lu.h"
#include "report/category_rows.h"
#include "report/tables.h"

namespace {

const OptionField fields[] = {
    {.type = OptionType::variable,
     .name = "purpose",
     .help = "the variable that the categories explain",
     .offset = offsetof(AnalysisOptions, purposes),
     .control = 3101},
};

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    return options.purposes[0] == 0 ? "please select one purpose variable" : nullptr;
}

// With K categories, position K of the products is the purpose variable y and position K + 1 the constant;
// with q items the correlations have q + 1 rows, the last for y. R positions are kept.
struct Quantification1Work {
    CategoryLayout layout;
    CategoryCrossTable crossTable;
    Matrix products;            // (K + 2) x (K + 2), y centred
    Block<Index> kept;          // R: all positions but the first category of each item
    Matrix reduced;             // R x R: kept rows and columns of the products
    Matrix reducedScratch;      // R x R
    Matrix inverse;             // R x R: of the reduced matrix
    Block<double> quantities;   // K + 2
    Block<double> standardized; // K: the quantities less their mean over the samples of the item
    Matrix correlation;         // (q + 1) x (q + 1)
    Matrix correlationScratch;  // (q + 1) x (q + 1)
    Matrix inverseCorrelation;  // (q + 1) x (q + 1)
    Block<double> partial;      // q
    Matrix scores;              // samples x 3: prediction, standardized residual, y
    double mean = 0.0;          // of y
    double sumOfSquares = 0.0;  // of y, about the mean
    double constant = 0.0;
    double determination = 0.0;
    double residualDeviation = 0.0;

    Index items() const { return layout.first.size(); }
    Index categories() const { return layout.totalCategories; }

    // For the layout that is there. Returns success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index samples) {
        const Index positions = categories() + 2;
        const Index r = positions - items();
        const Index variables = items() + 1;
        return crossTable.allocate(layout) | products.allocate(positions, positions) | kept.allocate(r) |
               reduced.allocate(r, r) | reducedScratch.allocate(r, r) | inverse.allocate(r, r) |
               quantities.allocate(positions) | standardized.allocate(categories()) |
               correlation.allocate(variables, variables) |
               correlationScratch.allocate(variables, variables) |
               inverseCorrelation.allocate(variables, variables) | partial.allocate(items()) |
               scores.allocate(samples, 3);
    }
};

double purposeOf(const DataMatrix& data, Index sample) {
    return data.at(sample, data.variables - 1);
}

bool doesPurposeVary(const DataMatrix& data) {
    const double first = purposeOf(data, 0);
    for (Index s = 0; s < data.samples; ++s) {
        if (purposeOf(data, s) != first) return true;
    }
    return false;
}

// Fills the mean and the squares of y, and the column of its sums in each category, about the mean: from
// those of the values as they are, which costs digits where the mean is large.
void sumPurpose(const DataMatrix& data, Quantification1Work& work) {
    const Index y = work.categories();
    const double samples = data.samples;
    double sum = 0.0, squares = 0.0;
    for (Index s = 0; s < data.samples; ++s) {
        const double value = purposeOf(data, s);
        sum += value;
        squares += value * value;
        for (Index i = 0; i < work.items(); ++i) {
            work.products(globalCategory(data, work.layout, s, i), y) += value;
        }
    }
    work.mean = sum / samples;
    work.sumOfSquares = squares - sum * sum / samples;
    for (Index g = 0; g < y; ++g) work.products(g, y) -= work.mean * work.crossTable.at(g, g);
}

// The mean of y and what rounding left of the deviations from it (Chan, Golub and LeVeque 1983).
double correctedMean(const DataMatrix& data) {
    double mean = 0.0;
    for (int pass = 0; pass < 2; ++pass) {
        double sum = 0.0;
        for (Index s = 0; s < data.samples; ++s) sum += purposeOf(data, s) - mean;
        mean += sum / data.samples;
    }
    return mean;
}

// The same as sumPurpose, from deviations.
void sumPurposeDeviations(const DataMatrix& data, Quantification1Work& work) {
    work.mean = correctedMean(data);
    for (Index s = 0; s < data.samples; ++s) {
        const double deviation = purposeOf(data, s) - work.mean;
        work.sumOfSquares += deviation * deviation;
        for (Index i = 0; i < work.items(); ++i) {
            work.products(globalCategory(data, work.layout, s, i), work.categories()) += deviation;
        }
    }
}

void fillProducts(const DataMatrix& data, Quantification1Work& work) {
    const Index y = work.categories();
    const Index constant = y + 1;
    Matrix& products = work.products;
    for (Index g = 0; g < y; ++g) {
        for (Index h = 0; h < y; ++h) products(g, h) = work.crossTable.at(g, h);
        const double frequency = products(g, g);
        products(g, constant) = frequency;
        products(y, g) = products(g, y);
        products(constant, g) = frequency;
    }
    products(y, y) = work.sumOfSquares;
    products(constant, constant) = data.samples;
}

void keepPositions(Quantification1Work& work) {
    listKeptCategories(work.layout, work.kept.data());
    work.kept[work.kept.size() - 2] = work.categories();
    work.kept[work.kept.size() - 1] = work.categories() + 1;
}

ErrorCode invertProducts(Quantification1Work& work) {
    for (Index r = 0; r < work.kept.size(); ++r) {
        const double* products = work.products.row(work.kept[r]);
        double* reduced = work.reduced.row(r);
        for (const Index h : work.kept) *reduced++ = products[h];
    }
    return invertRegular(work.reduced, work.reducedScratch, work.inverse);
}

void takeQuantities(Quantification1Work& work) {
    const Index y = work.kept.size() - 2;
    const double pivot = work.inverse(y, y);
    for (Index r = 0; r < work.kept.size(); ++r) {
        if (r != y) work.quantities[work.kept[r]] = -work.inverse(r, y) / pivot;
    }
    work.constant = work.quantities[work.categories() + 1] + work.mean;
}

void standardizeQuantities(const DataMatrix& data, Quantification1Work& work) {
    for (Index i = 0; i < work.items(); ++i) {
        const Index first = work.layout.first[i];
        const Index end = first + work.layout.categoryCount[i];
        double mean = 0.0;
        for (Index g = first; g < end; ++g) mean += work.products(g, g) * work.quantities[g];
        mean /= data.samples;
        for (Index g = first; g < end; ++g) work.standardized[g] = work.quantities[g] - mean;
    }
}

// Sums of products of the items, each sample having the standardized quantity of its category, and of y, in
// the place of the correlations.
void sumItems(Quantification1Work& work) {
    const Index y = work.items();
    for (Index i = 0; i < y; ++i) {
        const Index first = work.layout.first[i];
        const Index end = first + work.layout.categoryCount[i];
        double* sums = work.correlation.row(i);
        for (Index g = first; g < end; ++g) {
            const double* row = work.products.row(g);
            const double quantity = work.standardized[g];
            for (Index j = 0, h = 0; j < y; ++j) {
                const Index jEnd = h + work.layout.categoryCount[j];
                for (; h < jEnd; ++h) sums[j] += row[h] * quantity * work.standardized[h];
            }
            sums[y] += row[work.categories()] * quantity;
        }
        work.correlation(y, i) = sums[y];
    }
    work.correlation(y, y) = work.sumOfSquares;
}

// Whether each item varies by more than a share of the variation of y.
bool doItemsVary(const Quantification1Work& work) {
    constexpr double leastShare = 1e-20;
    for (Index i = 0; i < work.items(); ++i) {
        if (!(work.correlation(i, i) > leastShare * work.sumOfSquares)) return false;
    }
    return true;
}

void scaleToCorrelations(Matrix& sums) {
    for (Index i = 0; i < sums.rows(); ++i) {
        for (Index j = 0; j < i; ++j) {
            sums(i, j) = sums(j, i) = sums(i, j) / (std::sqrt(sums(i, i)) * std::sqrt(sums(j, j)));
        }
    }
    for (Index i = 0; i < sums.rows(); ++i) sums(i, i) = 1.0;
}

// The correlations of the items with each other and with y. Returns singularMatrix when an item does not
// vary.
ErrorCode correlateItems(Screens& screens, Quantification1Work& work) {
    sumItems(work);
    ErrorCode code = screens.setProgress(40);
    if (code == success && !doItemsVary(work)) code = singularMatrix;
    if (code == success) code = screens.setProgress(50);
    if (code != success) return code;
    scaleToCorrelations(work.correlation);
    return screens.setProgress(60);
}

// The partial correlations of the items with y.
void correlatePartially(Quantification1Work& work) {
    const Index y = work.items();
    const Matrix& inverse = work.inverseCorrelation;
    for (Index i = 0; i < y; ++i) {
        work.partial[i] = -inverse(i, y) / std::sqrt(inverse(y, y) * inverse(i, i));
    }
}

// What the squares of the residuals are divided by: their number, or their degrees of freedom, samples less
// constant and kept categories.
double residualDivisor(const Numerics& numerics, const DataMatrix& data, const Quantification1Work& work) {
    const Index fitted = numerics.textbook ? work.categories() - work.items() + 1 : 0;
    return static_cast<double>(data.samples - fitted);
}

void measureFit(double residualDivisor, Quantification1Work& work) {
    const double ofPurpose = work.inverseCorrelation(work.items(), work.items());
    work.determination = std::max(0.0, 1.0 - 1.0 / ofPurpose);
    work.residualDeviation = std::sqrt(work.sumOfSquares / (residualDivisor * ofPurpose));
}

void predictSamples(const DataMatrix& data, Quantification1Work& work) {
    for (Index s = 0; s < data.samples; ++s) {
        double prediction = work.constant;
        for (Index i = 0; i < work.items(); ++i) {
            prediction += work.quantities[globalCategory(data, work.layout, s, i)];
        }
        const double value = purposeOf(data, s);
        double* score = work.scores.row(s);
        score[0] = prediction;
        score[1] = (value - prediction) / work.residualDeviation;
        score[2] = value;
    }
}

ErrorCode compute(Screens& screens, const Numerics& numerics, const DataMatrix& data,
                  Quantification1Work& work) {
    ErrorCode code = screens.setProgress(5);
    if (code != success) return code;
    fillCrossTable(data, work.layout, work.crossTable);
    if (!doesPurposeVary(data)) return singularMatrix;
    (numerics.textbook ? sumPurposeDeviations : sumPurpose)(data, work);
    fillProducts(data, work);
    keepPositions(work);
    code = screens.setProgress(10);
    if (code == success) code = invertProducts(work);
    if (code == success) code = screens.setProgress(15);
    if (code != success) return code;
    takeQuantities(work);
    code = screens.setProgress(20);
    if (code != success) return code;
    standardizeQuantities(data, work);
    code = screens.setProgress(30);
    if (code == success) code = correlateItems(screens, work);
    if (code == success) {
        code = invertRegular(work.correlation, work.correlationScratch, work.inverseCorrelation);
    }
    if (code == success) code = screens.setProgress(70);
    if (code != success) return code;
    correlatePartially(work);
    code = screens.setProgress(80);
    if (code != success) return code;
    measureFit(residualDivisor(numerics, data, work), work);
    code = screens.setProgress(90);
    if (code != success) return code;
    predictSamples(data, work);
    return screens.setProgress(100);
}

constexpr CellFormat quantityCell = {18, 9};

void writeCorrelations(Report& report, const DataSet& data, const Quantification1Work& work) {
    writeCaption(report, "correlation coefficient matrix");
    WriteLowerTriangle(report, data, work.correlation.data(), 3);
    endTable(report);
}

void writeQuantities(Report& report, const DataSet& data, const Quantification1Work& work) {
    constexpr const char* headings[] = {"quantity", "s.quantity", "s.c.coef", "p.c.coef"};
    writeCaption(
        report,
        "quantity, standardized quantity, single correlation coefficient, partial correlation coefficient");
    WriteNamedHeader(report, headings, quantityCell.width);
    writeCategoryRows(
        report, work.layout, data.working.names,
        [&](Index i) {
            writeText(report, "", quantityCell.width);
            writeText(report, "", quantityCell.width);
            writeCell(report, work.correlation(i, work.items()), quantityCell);
            writeCell(report, work.partial[i], quantityCell);
        },
        [&](Index g) {
            writeCell(report, work.quantities[g], quantityCell);
            writeCell(report, work.standardized[g], quantityCell);
        });
    const double constants[] = {work.constant, work.mean};
    writeCells(report, 0, "constant", constants, quantityCell);
    endTable(report);
}

void writeFit(Report& report, const Quantification1Work& work) {
    writeCaption(report, "multiple coefficient of determination, multiple correlation coefficient");
    writeCellRow(report, 1, "m.c.determ", work.determination, quantityCell);
    writeCellRow(report, 2, "m.c.coef", std::sqrt(work.determination), quantityCell);
    endTable(report);
}

void writeSamples(Report& report, const DataSet& data, const Quantification1Work& work) {
    constexpr const char* headings[] = {"measure", "prediction", "residual", "s.residual"};
    writeCaption(report, "mesure, prediction, standardized residual");
    WriteNamedHeader(report, headings, report.formats.nameLength);
    for (Index s = 0; s < data.working.samples; ++s) {
        const double* score = work.scores.row(s);
        const double values[] = {score[2], score[0], score[2] - score[0], score[1]};
        WriteValueRow(report, values, std::ssize(values), 3, data.working.label(s), s + 1);
    }
    endTable(report);
}

// The space at the end of the status is kept so that it stays comparable.
void writeReport(AnalysisRun& run, const Quantification1Work& work) {
    Report& report = run.report;
    openReport(run, {.title = "quantification 1 multiple regression analysis statistics",
                     .status = "quantification 1 multiple regression analysis statistics "});
    writeCorrelations(report, run.data, work);
    writeQuantities(report, run.data, work);
    writeFit(report, work);
    writeSamples(report, run.data, work);
}

// A graph that cannot be shown has told so and leaves the result as it is.
ErrorCode buildQuantification1Graph(Screens& screens, AnalysisRun& run, const Quantification1Work& work) {
    constexpr const char* series[] = {"theoretic score", "standard resudial", "measure value"};
    const ErrorCode code =
        buildScoreGraph(screens, run, {.seriesNames = series, .seriesCount = 3, .scores = &work.scores});
    return code == graphNotBuilt ? success : code;
}

// For prediction: the prediction for a sample is the constant and the sum of the quantities of its
// categories; the last two numbers do not count in it. Returns success or outOfMemory.
ErrorCode keepModel(AnalysisRun& run, const Quantification1Work& work) {
    FittedModel& model = run.data.model;
    const ErrorCode code = model.quantities.allocate(work.quantities.size());
    if (code != success) return code;
    std::copy(work.quantities.begin(), work.quantities.end(), model.quantities.begin());
    std::snprintf(model.title.data(), fittedModelTitleSize, "quantification 1 multiple regression analysis");
    model.kind = run.kind;
    model.count = run.data.working.variables - 1; // the purpose variable is the last column
    model.constant = work.constant;
    model.alpha = 0.0;
    for (std::int32_t v = 0; v < model.count; ++v) {
        model.variables[v] = v;
        model.terms[v] = work.layout.categoryCount[v];
        model.startValues[v] = 1.0;
    }
    return success;
}

ErrorCode keepQuantification1Columns(AnalysisRun& run, const Quantification1Work& work) {
    const Matrix& scores = work.scores;
    return keepColumns(run.columns, scores.rows(), 3, [&](SampleColumns& columns) {
        columns.add("prediction", [&](Index s) { return scores(s, 0); });
        columns.add("residual", [&](Index s) { return scores(s, 2) - scores(s, 0); });
        columns.add("s.residual", [&](Index s) { return scores(s, 1); });
    });
}

ErrorCode buildQuantification1Picture(AnalysisRun& run, const Quantification1Work& work) {
    const double* const scores = work.scores.data();
    const Index stride = work.scores.columns();
    return buildPicture<FitCharts>(run, {.title = "quantification 1",
                                         .purpose = run.data.working.name(run.data.working.variables - 1),
                                         .measured = scores + 2,
                                         .measuredStride = stride,
                                         .predicted = scores,
                                         .predictedStride = stride,
                                         .residuals = scores + 1,
                                         .residualStride = stride});
}

ErrorCode runQuantification1(Screens& screens, AnalysisRun& run) {
    if (reorderWorkingBySelection(run.data) != success) return outOfMemory;
    const DataMatrix& data = run.data.working;
    const std::int32_t items = data.variables - 1; // the purpose variable is the last column
    if (items < 1) return noEffectiveVariable;
    Quantification1Work work;
    ErrorCode code = CategoricalCheck(data, items, work.layout);
    if (code == success) code = work.allocate(data.samples);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, *run.numerics, data, work);
    screens.hideProgress();
    if (code == success) code = keepModel(run, work);
    if (code != success) return code;

    noteDeviation(run, "s.residual"); // one category at least is kept, so the divisors differ
    writeReport(run, work);
    code = keepQuantification1Columns(run, work);
    if (code == success) code = buildQuantification1Picture(run, work);
    if (code != success) return code;
    closeReport(screens, run.report);
    return buildQuantification1Graph(screens, run, work);
}

} // namespace

const Analysis quantification1 = {
    .fields = fields, .driver = runQuantification1, .refuse = refuse, .pictures = fitPictures};
