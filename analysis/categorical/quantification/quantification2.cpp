#include "analysis/categorical/quantification/quantification2.h"

#include <algorithm>
#include <cmath>

#include "analysis/categorical/quantification/category_names.h"
#include "analysis/run/run_report.h"
#include "analysis/run/score_charts.h"
#include "analysis/run/score_graph.h"
#include "data/category_cross_table.h"
#include "numeric/eigen.h"
#include "numeric/lu.h"
#include "numeric/product.h"
#include "report/category_rows.h"
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
    std::int32_t groups = 0; // G
    Index vectors = 0;       // D
    CategoryLayout layout;
    CategoryCrossTable crossTable;
    Block<std::int32_t> groupOf; // of each sample, from 1
    Matrix frequencies;          // (G + 1) x K, the last row for all samples
    Block<double> sizes;         // G + 1, the last for all samples
    Block<Index> kept;           // R: global indices of the kept categories
    Matrix total;                // R x R: sums of products about the means
    Matrix between;              // R x R: the part of it between the groups
    Matrix root;                 // R x R: total^(-1/2), or its inverse
    Matrix product;              // R x R scratch
    Matrix eigenvectors;         // R x R
    Block<double> eigenvalues;   // R
    Matrix quantities;           // K x D
    Matrix scores;               // samples x D
    Matrix centroids;            // G x D
    Matrix correlations;         // 2 x D: squares and roots

    // For the layout and the groups that are there. Returns success or outOfMemory.
    [[nodiscard]] ErrorCode allocate(Index samples) {
        const Index categories = layout.totalCategories;
        const Index r = categories - layout.first.size();
        vectors = std::min<Index>(groups - 1, r);
        return crossTable.allocate(layout) | groupOf.allocate(samples) |
               frequencies.allocate(groups + 1, categories) | sizes.allocate(groups + 1) | kept.allocate(r) |
               total.allocate(r, r) | between.allocate(r, r) | root.allocate(r, r) | product.allocate(r, r) |
               eigenvectors.allocate(r, r) | eigenvalues.allocate(r) |
               quantities.allocate(categories, vectors) | scores.allocate(samples, vectors) |
               centroids.allocate(groups, vectors) | correlations.allocate(2, vectors);
    }
};

void countGroups(const DataMatrix& data, Quantification2Work& work) {
    const Index all = work.groups;
    double* const ofAll = work.frequencies.row(all);
    for (Index s = 0; s < data.samples; ++s) {
        const std::int32_t group = categoryOf(data, s, data.variables - 1);
        double* const ofGroup = work.frequencies.row(group);
        for (Index i = 0; i < work.layout.first.size(); ++i) {
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
    const double* all = work.frequencies.row(work.groups);
    const double samples = work.sizes[work.groups];
    for (Index r = 0; r < work.kept.size(); ++r) {
        const Index g = work.kept[r];
        double* total = work.total.row(r);
        for (const Index h : work.kept) *total++ = work.crossTable.at(g, h) - all[g] * all[h] / samples;
    }
}

void fillBetween(Quantification2Work& work) {
    const double* all = work.frequencies.row(work.groups);
    const double samples = work.sizes[work.groups];
    for (Index r = 0; r < work.kept.size(); ++r) {
        const Index g = work.kept[r];
        double* between = work.between.row(r);
        for (const Index h : work.kept) {
            double sum = 0.0;
            for (Index k = 0; k < work.groups; ++k) {
                const double* row = work.frequencies.row(k);
                sum += row[g] * row[h] / work.sizes[k];
            }
            *between++ = sum - all[g] * all[h] / samples;
        }
    }
}

// total^(-1/2) into the root.
ErrorCode rootOfTotal(Quantification2Work& work) {
    constexpr double leastShare = 1e-10; // of an eigenvalue in the largest
    const ErrorCode code = SymmetricEigen(work.eigenvectors, work.eigenvalues, work.total);
    if (code != success) return code;
    const double least = std::max(0.0, leastShare * work.eigenvalues[0]);
    for (double& value : work.eigenvalues) {
        if (!(value > least)) return eigenNotConvergent;
        value = 1.0 / std::sqrt(value);
    }
    composeSymmetric(work.eigenvectors, work.eigenvalues.data(), work.root);
    return success;
}

// Three groups or more: the eigenvectors u of total^(-1/2) between total^(-1/2) give the quantities
// total^(-1/2) u, and their eigenvalues are the squared canonical correlations.
ErrorCode solveCanonical(Quantification2Work& work) {
    ErrorCode code = rootOfTotal(work);
    if (code != success) return code;
    fillBetween(work);
    multiply(work.root, work.between, work.product);
    multiply(work.product, work.root, work.between);
    code = SymmetricEigen(work.eigenvectors, work.eigenvalues, work.between);
    if (code != success) return code;
    multiply(work.root, work.eigenvectors, work.product);
    for (Index d = 0; d < work.vectors; ++d) {
        work.correlations(0, d) = std::clamp(work.eigenvalues[d], 0.0, 1.0);
        for (Index r = 0; r < work.kept.size(); ++r) {
            work.quantities(work.kept[r], d) = work.product(r, d);
        }
    }
    return success;
}

// Two groups: total^-1 times the difference of the groups' relative frequencies.
ErrorCode solveTwoGroups(Quantification2Work& work) {
    const ErrorCode code = invertRegular(work.total, work.product, work.root);
    if (code != success) return code;
    const double* const first = work.frequencies.row(0);
    const double* const second = work.frequencies.row(1);
    for (Index r = 0; r < work.kept.size(); ++r) {
        const double* weights = work.root.row(r);
        double sum = 0.0;
        for (Index k = 0; k < work.kept.size(); ++k) {
            const Index g = work.kept[k];
            const double contrast = first[g] / work.sizes[0] - second[g] / work.sizes[1];
            sum += weights[k] * contrast;
        }
        work.quantities(work.kept[r], 0) = sum;
    }
    return success;
}

void scoreSamples(const DataMatrix& data, Quantification2Work& work) {
    for (Index s = 0; s < data.samples; ++s) {
        double* score = work.scores.row(s);
        for (Index i = 0; i < work.layout.first.size(); ++i) {
            const double* quantity = work.quantities.row(globalCategory(data, work.layout, s, i));
            for (Index d = 0; d < work.vectors; ++d) score[d] += quantity[d];
        }
    }
}

// Multiplies each column by its factor.
void scaleColumns(Matrix& matrix, const double* factors) {
    for (Index i = 0; i < matrix.rows(); ++i) {
        double* row = matrix.row(i);
        for (Index j = 0; j < matrix.columns(); ++j) row[j] *= factors[j];
    }
}

// Scales each vector so that the scores have variance 1, or to nothing where they do not vary.
void standardizeScores(Quantification2Work& work) {
    const double samples = work.sizes[work.groups];
    double mean[mostCategories] = {};
    double variance[mostCategories] = {};
    for (Index s = 0; s < work.scores.rows(); ++s) {
        const double* score = work.scores.row(s);
        for (Index d = 0; d < work.vectors; ++d) mean[d] += score[d] / samples;
    }
    for (Index s = 0; s < work.scores.rows(); ++s) {
        const double* score = work.scores.row(s);
        for (Index d = 0; d < work.vectors; ++d) {
            const double deviation = score[d] - mean[d];
            variance[d] += deviation * deviation / samples;
        }
    }
    double factors[mostCategories] = {};
    for (Index d = 0; d < work.vectors; ++d) {
        if (variance[d] > 0.0) factors[d] = 1.0 / std::sqrt(variance[d]);
    }
    scaleColumns(work.quantities, factors);
    scaleColumns(work.scores, factors);
}

// The mean scores of the groups.
void placeCentroids(Quantification2Work& work) {
    for (Index k = 0; k < work.groups; ++k) {
        const double* frequency = work.frequencies.row(k);
        double* const centroid = work.centroids.row(k);
        for (Index g = 0; g < work.quantities.rows(); ++g) {
            const double* quantity = work.quantities.row(g);
            for (Index d = 0; d < work.vectors; ++d) {
                centroid[d] += frequency[g] / work.sizes[k] * quantity[d];
            }
        }
    }
}

// Between two groups, of scores with variance 1 or 0.
double varianceBetween(const Quantification2Work& work) {
    const double samples = work.sizes[2];
    const double distance = work.centroids(0, 0) - work.centroids(1, 0);
    return std::clamp(work.sizes[0] / samples * work.sizes[1] / samples * distance * distance, 0.0, 1.0);
}

ErrorCode compute(Screens& screens, const DataMatrix& data, Quantification2Work& work) {
    listKeptCategories(work.layout, work.kept.data());
    ErrorCode code = screens.setProgress(10);
    if (code != success) return code;
    countGroups(data, work);
    fillCrossTable(data, work.layout, work.crossTable);
    code = screens.setProgress(30);
    if (code != success) return code;
    fillTotal(work);
    code = work.groups > 2 ? solveCanonical(work) : solveTwoGroups(work);
    if (code == success) code = screens.setProgress(65);
    if (code != success) return code;
    scoreSamples(data, work);
    standardizeScores(work);
    placeCentroids(work);
    if (work.groups == 2) work.correlations(0, 0) = varianceBetween(work);
    for (Index d = 0; d < work.vectors; ++d) {
        work.correlations(1, d) = std::sqrt(work.correlations(0, d));
    }
    return screens.setProgress(100);
}

void writeFrequencies(Report& report, const DataSet& data, const Quantification2Work& work) {
    writeCaption(report, "frequency matrix of categories");
    WritePrefixedHeader(report, work.groups, "group", "all", report.formats.nameLength);
    writeCategoryRows(report, work.layout, data.working.names, [&](Index g) {
        for (Index k = 0; k <= work.groups; ++k) writeValue(report, work.frequencies(k, g), 0);
    });
    WriteValueRow(report, work.sizes.data(), work.sizes.size(), 0, "all category", 0);
    endTable(report);
}

void writeCrossTable(Report& report, const DataSet& data, const Quantification2Work& work) {
    writeCaption(report, "cross table of categories");
    writeNumberedHeader(report, work.layout.totalCategories, report.formats.nameLength);
    writeCategoryRows(report, work.layout, data.working.names, [&](Index g) {
        for (Index h = 0; h <= g; ++h) writeInteger(report, work.crossTable.at(g, h), report.formats.width);
    });
    endTable(report);
}

void writeQuantities(Report& report, const DataSet& data, const Quantification2Work& work) {
    writeCaption(report, "quantity of categories");
    WriteVectorHeader(report, work.vectors, report.formats.nameLength);
    writeCategoryRows(report, work.layout, data.working.names, [&](Index g) {
        for (Index d = 0; d < work.vectors; ++d) writeValue(report, work.quantities(g, d), 6);
    });
    endTable(report);
}

void writeVectors(Report& report, const char* caption, const Matrix& matrix, const RowLabels& labels) {
    writeCaption(report, caption);
    WriteVectorTable(report, matrix, matrix.columns(), labels);
    endTable(report);
}

// The space at the end of the status is kept so that it stays comparable.
void writeReport(AnalysisRun& run, const Quantification2Work& work) {
    constexpr const char* coefficients[] = {"coef.square", "c.c.coef"};
    Report& report = run.report;
    openReport(run, {.title = "quantification 2 discriminant analysis statistics",
                     .status = "quantification 2 discriminant analysis statistics "});
    writeFrequencies(report, run.data, work);
    writeCrossTable(report, run.data, work);
    writeQuantities(report, run.data, work);
    writeVectors(report, "canonical correlation coefficient of categories", work.correlations,
                 RowLabels(coefficients));
    writeVectors(report, "centroid of group", work.centroids, RowLabels("group"));
    writeVectors(report, "score of sample", work.scores, run.data.working.labels);
}

// Two groups have a single score, which is no graph.
ErrorCode buildQuantification2Graph(Screens& screens, AnalysisRun& run, const Quantification2Work& work) {
    if (work.groups < 3) return success;
    return buildScoreGraph(screens, run,
                           {.seriesPrefix = "vector",
                            .seriesCount = work.vectors,
                            .scores = &work.scores,
                            .numbers = work.groupOf.data()});
}

// Samples and categories together; each sample stands at the sum of the quantities of its categories.
ErrorCode buildQuantification2Picture(AnalysisRun& run, const Quantification2Work& work) {
    TextList names;
    if (nameCategories(work.layout, run.data.working.names, names) != success) return outOfMemory;
    return buildPicture<ScoreCharts>(run, {.title = "quantification 2",
                                           .axisName = "score",
                                           .scores = &work.scores,
                                           .count = work.vectors,
                                           .others = &work.quantities,
                                           .otherNames = names,
                                           .othersName = "categories",
                                           .means = &work.centroids,
                                           .weights = work.correlations.data(),
                                           .weightCount = work.vectors,
                                           .weightName = "squared canonical correlation",
                                           .groupColumn = run.data.working.variables - 1});
}

ErrorCode runQuantification2(Screens& screens, AnalysisRun& run) {
    if (reorderWorkingBySelection(run.data) != success) return outOfMemory;
    const DataMatrix& data = run.data.working;
    const std::int32_t items = data.variables - 1; // the group variable is the last column
    if (items < 1) return noEffectiveVariable;
    Quantification2Work work;
    ErrorCode code = checkGroupVariable(data, items, work.groups);
    if (code == success) code = CategoricalCheck(data, items, work.layout);
    if (code == success) code = work.allocate(data.samples);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, data, work);
    screens.hideProgress();
    if (code != success) return code;

    writeReport(run, work);
    code = keepNumbered(run.columns, "score ", work.scores, work.vectors);
    if (code == success) code = buildQuantification2Picture(run, work);
    if (code != success) return code;
    closeReport(screens, run.report);
    return buildQuantification2Graph(screens, run, work);
}

} // namespace

const Analysis quantification2 = {
    .fields = fields, .driver = runQuantification2, .refuse = refuse, .pictures = scorePictures};
