#include "analysis/categorical/quantification/quantification1.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "analysis/run/run_report.h"
#include "analysis/run/score_graph.h"
#include "data/category_cross_table.h"
#include "numeric/lu.h"
#include "report/category_rows.h"
#include "report/table_formats.h"
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
// with q items the correlations have q + 1 rows, the last for y.
struct Quantification1Work {
    CategoryLayout layout;
    CategoryCrossTable crossTable;
    Block<double> products;     // (K + 2) x (K + 2), y centred
    Block<Index> kept;          // positions but for the first category of each item
    Block<double> reduced;      // kept rows and columns of the products
    Block<double> inverse;      // of the reduced matrix
    Block<double> quantities;   // K + 2
    Block<double> standardized; // K: the quantities less their mean over the samples of the item
    Block<double> correlation;  // (q + 1) x (q + 1)
    Block<double> decomposed;   // scratch for its inversion
    Block<double> inverseCorrelation;
    Block<double> partial;     // q
    Block<double> scores;      // samples x 3: prediction, standardized residual, y
    double mean = 0.0;         // of y
    double sumOfSquares = 0.0; // of y, about the mean
    double constant = 0.0;
    double determination = 0.0;
    double residualDeviation = 0.0;

    Index items() const { return layout.first.size(); }
    Index categories() const { return layout.totalCategories; }

    ErrorCode allocate(std::int32_t samples) {
        const Index positions = categories() + 2;
        const Index keptCount = positions - items();
        const Index variables = items() + 1;
        return crossTable.allocate(layout) | products.allocate(positions * positions) |
               kept.allocate(keptCount) | reduced.allocate(keptCount * keptCount) |
               inverse.allocate(keptCount * keptCount) | quantities.allocate(positions) |
               standardized.allocate(categories()) | correlation.allocate(variables * variables) |
               decomposed.allocate(variables * variables) |
               inverseCorrelation.allocate(variables * variables) | partial.allocate(items()) |
               scores.allocate(3 * samples);
    }
};

double purposeOf(const DataMatrix& data, std::int32_t sample) {
    return data.values[(sample + 1) * data.variables - 1];
}

// Fills the sums of y and the column of its sums in each category. False when all values of y are equal.
bool sumPurpose(const DataMatrix& data, Quantification1Work& work) {
    const Index y = work.categories();
    const Index stride = y + 2;
    const double samples = data.samples;
    const double first = purposeOf(data, 0);
    bool varies = false;
    double sum = 0.0, squares = 0.0;
    for (std::int32_t s = 0; s < data.samples; ++s) {
        const double value = purposeOf(data, s);
        varies = varies || value != first;
        sum += value;
        squares += value * value;
        for (Index i = 0; i < work.items(); ++i) {
            work.products[globalCategory(data, work.layout, s, i) * stride + y] += value;
        }
    }
    work.mean = sum / samples;
    work.sumOfSquares = squares - sum * sum / samples;
    return varies;
}

void fillProducts(const DataMatrix& data, Quantification1Work& work) {
    const Index y = work.categories();
    const Index constant = y + 1;
    const Index stride = y + 2;
    double* const products = work.products.data();
    for (Index g = 0; g < y; ++g) {
        for (Index h = 0; h < y; ++h) products[g * stride + h] = work.crossTable.counts[g * y + h];
        const double frequency = products[g * stride + g];
        products[g * stride + y] -= work.mean * frequency;
        products[g * stride + constant] = frequency;
        products[y * stride + g] = products[g * stride + y];
        products[constant * stride + g] = frequency;
    }
    products[y * stride + y] = work.sumOfSquares;
    products[constant * stride + constant] = data.samples;
}

void keepPositions(Quantification1Work& work) {
    listKeptCategories(work.layout, work.kept.data());
    work.kept[work.kept.size() - 2] = work.categories();
    work.kept[work.kept.size() - 1] = work.categories() + 1;
}

void reduceProducts(Quantification1Work& work) {
    const Index stride = work.categories() + 2;
    double* reduced = work.reduced.data();
    for (const Index g : work.kept) {
        for (const Index h : work.kept) *reduced++ = work.products[g * stride + h];
    }
}

ErrorCode invertProducts(Quantification1Work& work) {
    const int order = static_cast<int>(work.kept.size());
    double determinant = 0.0;
    reduceProducts(work);
    const ErrorCode code = MatrixInverse(order, order, work.reduced.data(), work.inverse.data(), determinant);
    if (code != success) return code;
    reduceProducts(work); // the inversion has destroyed it
    const bool singular = isSingular(order, order, work.reduced.data(), order, work.inverse.data());
    return singular ? singularMatrix : success;
}

void takeQuantities(Quantification1Work& work) {
    const Index y = work.categories();
    const Index order = work.kept.size();
    const Index yRow = order - 2;
    const double pivot = work.inverse[yRow * order + yRow];
    for (Index k = 0; k < order; ++k) {
        if (k != yRow) work.quantities[work.kept[k]] = -work.inverse[k * order + yRow] / pivot;
    }
    work.constant = work.quantities[y + 1] + work.mean;
}

void standardizeQuantities(std::int32_t samples, Quantification1Work& work) {
    for (Index i = 0; i < work.items(); ++i) {
        const Index first = work.layout.first[i];
        const Index end = first + work.layout.categoryCount[i];
        const Index step = work.categories() + 3; // along the diagonal of the products
        double mean = 0.0;
        for (Index g = first; g < end; ++g) mean += work.products[g * step] * work.quantities[g];
        mean /= samples;
        for (Index g = first; g < end; ++g) work.standardized[g] = work.quantities[g] - mean;
    }
}

// Sums of products of the items, each sample having the standardized quantity of its category, and of y.
// Returns singularMatrix when an item does not vary.
ErrorCode correlateItems(Screens& screens, Quantification1Work& work) {
    constexpr double leastShare = 1e-20; // of the variation of an item in that of y
    const Index y = work.items();
    const Index variables = y + 1;
    const Index stride = work.categories() + 2;
    double* const sums = work.correlation.data();
    std::fill_n(sums, variables * variables, 0.0);
    for (Index i = 0; i < y; ++i) {
        const Index first = work.layout.first[i];
        const Index end = first + work.layout.categoryCount[i];
        for (Index g = first; g < end; ++g) {
            const double* row = work.products.data() + g * stride;
            const double quantity = work.standardized[g];
            for (Index j = 0, h = 0; j < y; ++j) {
                const Index jEnd = h + work.layout.categoryCount[j];
                for (; h < jEnd; ++h) sums[i * variables + j] += row[h] * quantity * work.standardized[h];
            }
            sums[i * variables + y] += row[work.categories()] * quantity;
        }
        sums[y * variables + i] = sums[i * variables + y];
    }
    sums[y * variables + y] = work.sumOfSquares;
    screens.setProgress(40);

    for (Index i = 0; i < y; ++i) {
        if (!(sums[i * variables + i] > leastShare * work.sumOfSquares)) return singularMatrix;
    }
    screens.setProgress(50);
    for (Index i = 0; i < variables; ++i) {
        for (Index j = 0; j < i; ++j) {
            const double scale = std::sqrt(sums[i * variables + i]) * std::sqrt(sums[j * variables + j]);
            sums[i * variables + j] = sums[j * variables + i] = sums[i * variables + j] / scale;
        }
    }
    for (Index i = 0; i < variables; ++i) sums[i * variables + i] = 1.0;
    screens.setProgress(60);
    return success;
}

ErrorCode invertCorrelation(Screens& screens, Quantification1Work& work) {
    const int order = static_cast<int>(work.items() + 1);
    std::copy(work.correlation.begin(), work.correlation.end(), work.decomposed.begin());
    screens.setProgress(70);
    double determinant = 0.0;
    const ErrorCode code =
        MatrixInverse(order, order, work.decomposed.data(), work.inverseCorrelation.data(), determinant);
    if (code != success) return code;
    screens.setProgress(80);
    const bool singular =
        isSingular(order, order, work.correlation.data(), order, work.inverseCorrelation.data());
    return singular ? singularMatrix : success;
}

void measureFit(std::int32_t samples, Quantification1Work& work) {
    const Index y = work.items();
    const Index variables = y + 1;
    const double* inverse = work.inverseCorrelation.data();
    const double ofPurpose = inverse[y * variables + y];
    for (Index i = 0; i < y; ++i) {
        work.partial[i] = -inverse[i * variables + y] / std::sqrt(ofPurpose * inverse[i * variables + i]);
    }
    work.determination = std::max(0.0, 1.0 - 1.0 / ofPurpose);
    work.residualDeviation = std::sqrt(work.sumOfSquares / (samples * ofPurpose));
}

void predictSamples(const DataMatrix& data, Quantification1Work& work) {
    double* score = work.scores.data();
    for (std::int32_t s = 0; s < data.samples; ++s, score += 3) {
        double prediction = work.constant;
        for (Index i = 0; i < work.items(); ++i) {
            prediction += work.quantities[globalCategory(data, work.layout, s, i)];
        }
        const double value = purposeOf(data, s);
        score[0] = prediction;
        score[1] = (value - prediction) / work.residualDeviation;
        score[2] = value;
    }
}

ErrorCode compute(Screens& screens, const DataMatrix& data, Quantification1Work& work) {
    screens.setProgress(5);
    fillCrossTable(data, work.layout, work.crossTable);
    if (!sumPurpose(data, work)) return singularMatrix;
    fillProducts(data, work);
    keepPositions(work);
    screens.setProgress(10);
    ErrorCode code = invertProducts(work);
    if (code != success) return code;
    screens.setProgress(15);
    takeQuantities(work);
    screens.setProgress(20);
    standardizeQuantities(data.samples, work);
    screens.setProgress(30);
    code = correlateItems(screens, work);
    if (code == success) code = invertCorrelation(screens, work);
    if (code != success) return code;
    measureFit(data.samples, work);
    screens.setProgress(90);
    predictSamples(data, work);
    screens.setProgress(100);
    return success;
}

constexpr int columnWidth = 18;

void writeNumber(Report& report, double value) {
    writeCell(report, value, {columnWidth, 9});
}

void writeLine(Report& report, int number, const char* label, double value) {
    startRow(report, number, label);
    writeNumber(report, value);
    endRow(report);
}

void writeQuantities(Report& report, const DataSet& data, const Quantification1Work& work) {
    report.lower.append(
        "\tquantity, standardized quantity, single correlation coefficient, partial correlation "
        "coefficient\n");
    const char* const headings[] = {"quantity", "s.quantity", "s.c.coef", "p.c.coef"};
    WriteNamedHeader(report, headings, 4, columnWidth);
    writeCategoryRows(
        report, work.layout, data.working.names,
        [&](Index i) {
            writeText(report, "", columnWidth);
            writeText(report, "", columnWidth);
            writeNumber(report, work.correlation[i * (work.items() + 1) + work.items()]);
            writeNumber(report, work.partial[i]);
        },
        [&](Index g) {
            writeNumber(report, work.quantities[g]);
            writeNumber(report, work.standardized[g]);
        });
    startRow(report, 0, "constant");
    writeNumber(report, work.constant);
    writeNumber(report, work.mean);
    endRow(report);
    report.lower.append("\n");
}

void writeFit(Report& report, const Quantification1Work& work) {
    report.lower.append("\tmultiple coefficient of determination, multiple correlation coefficient\n");
    writeLine(report, 1, "m.c.determ", work.determination);
    writeLine(report, 2, "m.c.coef", std::sqrt(work.determination));
    report.lower.append("\n");
}

void writeSamples(Report& report, const DataSet& data, const Quantification1Work& work) {
    report.lower.append("\tmesure, prediction, standardized residual\n");
    const char* const headings[] = {"measure", "prediction", "residual", "s.residual"};
    WriteNamedHeader(report, headings, 4, report.formats.nameLength);
    const double* score = work.scores.data();
    for (std::int32_t s = 0; s < data.working.samples; ++s, score += 3) {
        const double values[] = {score[2], score[0], score[2] - score[0], score[1]};
        WriteValueRow(report, values, 4, 3, data.working.label(s), s + 1);
    }
    report.lower.append("\n");
}

void writeReport(Screens& screens, AnalysisRun& run, const Quantification1Work& work) {
    const Settings& settings = run.options.settings;
    Report& report = run.report;
    report.lower.clear();
    report.lower.append("\nquantification 1 multiple regression analysis statistics\n\n");
    report.status.clear();
    report.status.append("status : quantification 1 multiple regression analysis statistics ");

    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);
    report.lower.append("\tcorrelation coefficient matrix\n");
    WriteLowerTriangle(report, run.data, work.correlation.data(), 3);
    report.lower.append("\n");
    writeQuantities(report, run.data, work);
    writeFit(report, work);
    writeSamples(report, run.data, work);
    closeReport(screens, report);
}

// A graph that cannot be shown has told so and leaves the result as it is.
ErrorCode buildQuantification1Graph(Screens& screens, AnalysisRun& run, const Quantification1Work& work) {
    const char* const series[] = {"theoretic score", "standard resudial", "measure value"};
    const ErrorCode code = buildScoreGraph(
        screens, run,
        {.seriesNames = series, .seriesCount = 3, .scores = work.scores.data(), .scoreStride = 3});
    return code == graphNotBuilt ? success : code;
}

// For prediction: the prediction for a sample is the constant and the sum of the quantities of its
// categories; the last two numbers do not count in it. Returns success or outOfMemory.
ErrorCode keepModel(AnalysisRun& run, const Quantification1Work& work) {
    FittedModel& model = run.data.model;
    const ErrorCode code = model.quantities.allocate(work.quantities.size());
    if (code != success) return code;
    std::copy(work.quantities.begin(), work.quantities.end(), model.quantities.begin());
    std::snprintf(model.title.data(), model.title.size(), "quantification 1 multiple regression analysis");
    model.kind = run.kind;
    model.count = static_cast<std::int32_t>(work.items());
    model.constant = work.constant;
    model.alpha = 0.0;
    for (Index v = 0; v < work.items(); ++v) {
        model.variables[v] = static_cast<std::int32_t>(v);
        model.terms[v] = work.layout.categoryCount[v];
        model.startValues[v] = 1.0;
    }
    return success;
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    reorderWorkingBySelection(run.data);
    const DataMatrix& data = run.data.working;
    const std::int32_t items = data.variables - 1; // the purpose variable is the last column
    if (items < 1) return noEffectiveVariable;
    Quantification1Work work;
    ErrorCode code = CategoricalCheck(data, items, work.layout);
    if (code == success) code = work.allocate(data.samples);
    if (code != success) return code;

    startProgress(screens, run.report);
    code = compute(screens, data, work);
    screens.hideProgress();
    if (code == success) code = keepModel(run, work);
    if (code != success) return code;
    writeReport(screens, run, work);
    return buildQuantification1Graph(screens, run, work);
}

} // namespace

const Analysis quantification1 = {.fields = fields, .driver = run, .refuse = refuse};
