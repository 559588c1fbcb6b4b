#include "analysis/categorical/quantification/quantification2.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "analysis/run/run_report.h"
#include "analysis/run/score_graph.h"
#include "data/category_cross_table.h"
#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/product.h"
#include "report/category_rows.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

const OptionField fields[] = {
    {.type = OptionType::variable,
     .name = "group",
     .help = "the variable that holds the group numbers",
     .offset = offsetof(AnalysisOptions, purposes),
     .control = 3201},
};

const char* refuse(const AnalysisOptions& options, std::uint32_t) {
    return options.purposes[0] == 0 ? "please select one group variable" : nullptr;
}

// G groups, K categories of q items, R = K - q of them kept (all but the first of each item), D vectors.
struct Quantification2Work {
    std::int32_t groups = 0;
    Index vectors = 0;
    CategoryLayout layout;
    CategoryCrossTable crossTable;
    Block<std::int32_t> groupOf; // of each sample, from 1
    Block<double> frequencies;   // (G + 1) x K, the last row for all samples
    Block<double> sizes;         // G + 1, the last for all samples
    Block<Index> kept;           // global indices of the kept categories
    Block<double> total;         // R x R: sums of products about the means
    Block<double> between;       // R x R: the part of it between the groups
    Block<double> root;          // R x R: total^(-1/2), or its inverse
    Block<double> product;       // R x R scratch
    Block<double> eigenvectors;  // R x R
    Block<double> eigenvalues;   // R
    Block<double> quantities;    // K x D
    Block<double> scores;        // samples x D
    Block<double> centroids;     // G x D
    Block<double> correlations;  // 2 x D: squares and roots

    Index categories() const { return layout.totalCategories; }
    Index groupCount() const { return groups; }

    ErrorCode allocate(std::int32_t samples) {
        const Index order = categories() - layout.first.size();
        const Index square = order * order;
        vectors = std::min(groupCount() - 1, order);
        return crossTable.allocate(layout) | groupOf.allocate(samples) |
               frequencies.allocate((groupCount() + 1) * categories()) | sizes.allocate(groupCount() + 1) |
               kept.allocate(order) | total.allocate(square) | between.allocate(square) |
               root.allocate(square) | product.allocate(square) | eigenvectors.allocate(square) |
               eigenvalues.allocate(order) | quantities.allocate(categories() * vectors) |
               scores.allocate(Index{samples} * vectors) | centroids.allocate(groupCount() * vectors) |
               correlations.allocate(2 * vectors);
    }
};

void countGroups(const DataMatrix& data, Quantification2Work& work) {
    const Index items = work.layout.first.size();
    const Index all = work.groupCount();
    for (std::int32_t s = 0; s < data.samples; ++s) {
        const std::int32_t group = categoryOf(data, s, data.variables - 1);
        double* const ofGroup = work.frequencies.data() + Index{group} * work.categories();
        double* const ofAll = work.frequencies.data() + all * work.categories();
        for (Index i = 0; i < items; ++i) {
            const Index g = globalCategory(data, work.layout, s, i);
            ofGroup[g] += 1.0;
            ofAll[g] += 1.0;
        }
        work.sizes[group] += 1.0;
        work.sizes[all] += 1.0;
        work.groupOf[s] = group + 1;
    }
}

void fillTotal(Quantification2Work& work) {
    const double* all = work.frequencies.data() + work.groupCount() * work.categories();
    const double samples = work.sizes[work.groupCount()];
    double* total = work.total.data();
    for (const Index g : work.kept) {
        const std::int32_t* row = work.crossTable.counts.data() + g * work.categories();
        for (const Index h : work.kept) *total++ = row[h] - all[g] * all[h] / samples;
    }
}

void fillBetween(Quantification2Work& work) {
    const Index stride = work.categories();
    const double* const all = work.frequencies.data() + work.groupCount() * stride;
    const double samples = work.sizes[work.groupCount()];
    double* between = work.between.data();
    for (const Index g : work.kept) {
        for (const Index h : work.kept) {
            double sum = 0.0;
            for (Index k = 0; k < work.groupCount(); ++k) {
                const double* row = work.frequencies.data() + k * stride;
                sum += row[g] * row[h] / work.sizes[k];
            }
            *between++ = sum - all[g] * all[h] / samples;
        }
    }
}

// total^(-1/2) into the root.
ErrorCode rootOfTotal(Quantification2Work& work) {
    constexpr double leastShare = 1e-10; // of an eigenvalue in the largest
    const int order = static_cast<int>(work.kept.size());
    const ErrorCode code =
        SymmetricEigen(order, order, work.eigenvectors.data(), work.eigenvalues.data(), work.total.data());
    if (code != success) return code;
    const double least = std::max(0.0, leastShare * work.eigenvalues[0]);
    for (double& value : work.eigenvalues) {
        if (!(value > least)) return eigenNotConvergent;
        value = 1.0 / std::sqrt(value);
    }
    composeSymmetric(order, work.eigenvectors.data(), work.eigenvalues.data(), work.root.data());
    return success;
}

// Three groups or more: the eigenvectors u of total^(-1/2) between total^(-1/2) give the quantities
// total^(-1/2) u, and their eigenvalues are the squared canonical correlations.
ErrorCode solveCanonical(Quantification2Work& work) {
    const int order = static_cast<int>(work.kept.size());
    ErrorCode code = rootOfTotal(work);
    if (code != success) return code;
    fillBetween(work);
    multiply(order, order, order, work.root.data(), work.between.data(), work.product.data());
    multiply(order, order, order, work.product.data(), work.root.data(), work.between.data());
    code =
        SymmetricEigen(order, order, work.eigenvectors.data(), work.eigenvalues.data(), work.between.data());
    if (code != success) return code;
    multiply(order, order, order, work.root.data(), work.eigenvectors.data(), work.product.data());
    for (Index d = 0; d < work.vectors; ++d) {
        work.correlations[d] = std::clamp(work.eigenvalues[d], 0.0, 1.0);
        for (Index r = 0; r < work.kept.size(); ++r) {
            work.quantities[work.kept[r] * work.vectors + d] = work.product[r * work.kept.size() + d];
        }
    }
    return success;
}

// Two groups: total^-1 times the difference of the groups' relative frequencies.
ErrorCode solveTwoGroups(Quantification2Work& work) {
    const int order = static_cast<int>(work.kept.size());
    const ErrorCode code = invertRegular(order, work.total.data(), work.product.data(), work.root.data());
    if (code != success) return code;
    const double* const first = work.frequencies.data();
    const double* const second = first + work.categories();
    for (Index r = 0; r < work.kept.size(); ++r) {
        double sum = 0.0;
        for (Index k = 0; k < work.kept.size(); ++k) {
            const Index g = work.kept[k];
            const double contrast = first[g] / work.sizes[0] - second[g] / work.sizes[1];
            sum += work.root[r * work.kept.size() + k] * contrast;
        }
        work.quantities[work.kept[r]] = sum;
    }
    return success;
}

void scoreSamples(const DataMatrix& data, Quantification2Work& work) {
    double* score = work.scores.data();
    for (std::int32_t s = 0; s < data.samples; ++s, score += work.vectors) {
        for (Index i = 0; i < work.layout.first.size(); ++i) {
            const Index g = globalCategory(data, work.layout, s, i);
            for (Index d = 0; d < work.vectors; ++d) score[d] += work.quantities[g * work.vectors + d];
        }
    }
}

// Multiplies column d of a matrix in rows of D by factors[d].
void scaleColumns(Block<double>& matrix, const double* factors, Index columns) {
    for (Index at = 0; at < matrix.size(); ++at) matrix[at] *= factors[at % columns];
}

// Scales each vector so that the scores have variance 1, or to nothing where they do not vary.
void standardizeScores(Quantification2Work& work) {
    const double samples = work.sizes[work.groupCount()];
    double mean[mostCategories] = {};
    double variance[mostCategories] = {};
    for (Index at = 0; at < work.scores.size(); ++at) mean[at % work.vectors] += work.scores[at] / samples;
    for (Index at = 0; at < work.scores.size(); ++at) {
        const double deviation = work.scores[at] - mean[at % work.vectors];
        variance[at % work.vectors] += deviation * deviation / samples;
    }
    double factors[mostCategories] = {};
    for (Index d = 0; d < work.vectors; ++d) {
        if (variance[d] > 0.0) factors[d] = 1.0 / std::sqrt(variance[d]);
    }
    scaleColumns(work.quantities, factors, work.vectors);
    scaleColumns(work.scores, factors, work.vectors);
}

// The mean scores of the groups.
void placeCentroids(Quantification2Work& work) {
    for (Index k = 0; k < work.groupCount(); ++k) {
        const double* frequency = work.frequencies.data() + k * work.categories();
        double* const centroid = work.centroids.data() + k * work.vectors;
        for (Index g = 0; g < work.categories(); ++g) {
            for (Index d = 0; d < work.vectors; ++d) {
                centroid[d] += frequency[g] / work.sizes[k] * work.quantities[g * work.vectors + d];
            }
        }
    }
}

// Between two groups, of scores with variance 1 or 0.
double varianceBetween(const Quantification2Work& work) {
    const double samples = work.sizes[2];
    const double distance = work.centroids[0] - work.centroids[1];
    return std::clamp(work.sizes[0] / samples * work.sizes[1] / samples * distance * distance, 0.0, 1.0);
}

ErrorCode compute(Screens& screens, const DataMatrix& data, Quantification2Work& work) {
    listKeptCategories(work.layout, work.kept.data());
    screens.setProgress(10);
    countGroups(data, work);
    fillCrossTable(data, work.layout, work.crossTable);
    screens.setProgress(30);
    fillTotal(work);
    const ErrorCode code = work.groups > 2 ? solveCanonical(work) : solveTwoGroups(work);
    if (code != success) return code;
    screens.setProgress(65);
    scoreSamples(data, work);
    standardizeScores(work);
    placeCentroids(work);
    if (work.groups == 2) work.correlations[0] = varianceBetween(work);
    for (Index d = 0; d < work.vectors; ++d) {
        work.correlations[work.vectors + d] = std::sqrt(work.correlations[d]);
    }
    screens.setProgress(100);
    return success;
}

void writeFrequencies(Report& report, const DataSet& data, const Quantification2Work& work) {
    report.lower.append("\tfrequency matrix of categories\n");
    WritePrefixedHeader(report, work.groups, "group", "all", report.formats.nameLength);
    writeCategoryRows(report, work.layout, data.working.names, [&](Index g) {
        for (Index k = 0; k <= work.groupCount(); ++k) {
            writeValue(report, work.frequencies[k * work.categories() + g], 0);
        }
    });
    WriteValueRow(report, work.sizes.data(), work.groups + 1, 0, "all category", 0);
    report.lower.append("\n");
}

void writeCrossTable(Report& report, const DataSet& data, const Quantification2Work& work) {
    report.lower.append("\tcross table of categories\n");
    writeNumberedHeader(report, work.layout.totalCategories, report.formats.nameLength);
    writeCategoryRows(report, work.layout, data.working.names, [&](Index g) {
        const std::int32_t* row = work.crossTable.counts.data() + g * work.categories();
        for (Index h = 0; h <= g; ++h) writeValue(report, row[h], 0);
    });
    report.lower.append("\n");
}

void writeQuantities(Report& report, const DataSet& data, const Quantification2Work& work) {
    report.lower.append("\tquantity of categories\n");
    WriteVectorHeader(report, static_cast<int>(work.vectors), report.formats.nameLength);
    writeCategoryRows(report, work.layout, data.working.names, [&](Index g) {
        for (Index d = 0; d < work.vectors; ++d) writeValue(report, work.quantities[g * work.vectors + d], 6);
    });
    report.lower.append("\n");
}

void writeVectors(Report& report, const char* title, std::int32_t rows, const Block<double>& matrix,
                  const Quantification2Work& work, const RowLabels& labels) {
    const int vectors = static_cast<int>(work.vectors);
    report.lower.append(title);
    WriteVectorTable(report, rows, vectors, matrix.data(), vectors, labels);
    report.lower.append("\n");
}

void writeReport(Screens& screens, AnalysisRun& run, const Quantification2Work& work) {
    const Settings& settings = run.options.settings;
    Report& report = run.report;
    report.lower.clear();
    report.lower.append("\nquantification 2 discriminant analysis statistics\n\n");
    report.status.clear();
    report.status.append("status : quantification 2 discriminant analysis statistics ");

    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);
    writeFrequencies(report, run.data, work);
    writeCrossTable(report, run.data, work);
    writeQuantities(report, run.data, work);
    constexpr const char* coefficients[] = {"coef.square", "c.c.coef"};
    writeVectors(report, "\tcanonical correlation coefficient of categories\n", 2, work.correlations, work,
                 RowLabels(coefficients));
    writeVectors(report, "\tcentroid of group\n", work.groups, work.centroids, work, RowLabels("group"));
    writeVectors(report, "\tscore of sample\n", run.data.working.samples, work.scores, work,
                 run.data.working.labels);
    closeReport(screens, report);
}

ErrorCode buildQuantification2Graph(Screens& screens, AnalysisRun& run, const Quantification2Work& work) {
    if (work.groups < 3) return success;
    const int vectors = static_cast<int>(work.vectors);
    return buildScoreGraph(screens, run,
                           {.seriesPrefix = "vector",
                            .seriesCount = vectors,
                            .scores = work.scores.data(),
                            .scoreStride = vectors,
                            .numbers = work.groupOf.data()});
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    reorderWorkingBySelection(run.data);
    const DataMatrix& data = run.data.working;
    const std::int32_t items = data.variables - 1; // the group variable is the last column
    if (items < 1) return noEffectiveVariable;
    Quantification2Work work;
    ErrorCode code = checkGroupVariable(data, items, work.groups);
    if (code == success) code = CategoricalCheck(data, items, work.layout);
    if (code == success) code = work.allocate(data.samples);
    if (code != success) return code;

    startProgress(screens, run.report);
    code = compute(screens, data, work);
    screens.hideProgress();
    if (code != success) return code;
    writeReport(screens, run, work);
    return buildQuantification2Graph(screens, run, work);
}

} // namespace

const Analysis quantification2 = {.fields = fields, .driver = run, .refuse = refuse};
