#include "analysis/multivariate/cluster/cluster.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "analysis/multivariate/cluster/cluster_merging.h"
#include "analysis/multivariate/cluster/dendrogram.h"
#include "analysis/run/build_picture.h"
#include "analysis/run/run_report.h"
#include "numeric/lu.h"
#include "numeric/moments.h"
#include "report/cells.h"

namespace {

constexpr const char* divisions[] = {"sample", "variable"};
constexpr const char* distances[] = {"mahalanobis", "standardized", "raw"};
constexpr const char* criteria[] = {"nearest", "furthest", "median", "group-average", "centroid", "ward"};

const OptionField fields[] = {
    {.type = OptionType::choice,
     .name = "division",
     .help = "what is put into clusters",
     .offset = offsetof(AnalysisOptions, settings.cluster.division),
     .control = 2701,
     .choices = divisions},
    {.type = OptionType::choice,
     .name = "distance",
     .help = "the distance of two samples",
     .offset = offsetof(AnalysisOptions, settings.cluster.distance),
     .control = 2703,
     .choices = distances},
    {.type = OptionType::choice,
     .name = "criterion",
     .help = "how the distances of a new cluster follow",
     .offset = offsetof(AnalysisOptions, settings.cluster.criterion),
     .control = 2706,
     .choices = criteria},
};

constexpr const char* title = "cluster analysis statistics";
constexpr const char* distanceTitles[] = {"mahalanobis", "standardized value", "raw data value"};
constexpr const char* criterionTitles[] = {"nearest neighbour", "furtherest neighbour", "median method",
                                           "group average",     "centroid method",      "Ward's method"};

constexpr int median = 2;
constexpr int groupAverage = 3;

// The options as indices of the texts above, whatever a settings file holds.
struct ClusterChoice {
    bool ofVariables;
    int distance;
    int criterion;

    bool mahalanobis() const { return distance == 0; }
    bool raw() const { return distance == 2; }
    // Whether the textbook's rule is one for distances, not for their squares.
    bool isOfDistances() const { return criterion < median || criterion == groupAverage; }
};

ClusterChoice choiceOf(const ClusterOptions& options) {
    return {.ofVariables = options.division != 0,
            .distance = std::clamp(options.distance, 0, 2),
            .criterion = std::clamp(options.criterion, 0, 5)};
}

struct ClusterWork {
    ClusterChoice choice = {};
    bool isRooted = false; // whether clusters merge by the roots of the squared distances
    MomentMatrices moments;
    Matrix standardized;      // samples x variables
    Matrix scratch;           // p x p, of the inversion
    Matrix inverse;           // p x p: of the correlation matrix
    Block<double> difference; // p, scratch
    Block<double> product;    // p, scratch: the inverse times the difference
    ClusterMerging merging;
    Block<char> picture; // a row of the dendrogram with its end

    [[nodiscard]] ErrorCode allocate(const ClusterChoice& chosen, const Numerics& numerics,
                                     const DataMatrix& data) {
        choice = chosen;
        isRooted = numerics.textbook ? choice.isOfDistances() : choice.criterion == median;
        const Index p = data.variables;
        const Index items = choice.ofVariables ? p : data.samples;
        ErrorCode code = merging.allocate(items) | picture.allocate(dendrogramWidth(items) + 1);
        if (choice.ofVariables) return numerics.textbook ? code | moments.allocate(p) : code;
        if (choice.raw()) return code;
        code |= moments.allocate(p) | standardized.allocate(data.samples, p);
        if (!choice.mahalanobis()) return code;
        return code | scratch.allocate(p, p) | inverse.allocate(p, p) | difference.allocate(p) |
               product.allocate(p);
    }
};

ErrorCode computeMoments(const Numerics& numerics, const DataMatrix& data, ClusterWork& work) {
    const ErrorCode code = numerics.moments(data.values.data(), data.samples, data.variables, work.moments);
    if (code != success) return code;
    return numerics.anyConstant(work.moments) ? illegalData : success;
}

ErrorCode standardize(const Numerics& numerics, const DataMatrix& data, ClusterWork& work) {
    const ErrorCode code = computeMoments(numerics, data, work);
    if (code != success) return code;
    const double* means = work.moments.means.data();
    const double* sds = work.moments.sds.data();
    for (Index s = 0; s < work.standardized.rows(); ++s) {
        const double* values = data.row(s);
        double* row = work.standardized.row(s);
        for (Index j = 0; j < work.standardized.columns(); ++j) row[j] = (values[j] - means[j]) / sds[j];
    }
    return success;
}

// The inverse is left transposed: products with it run along its rows then.
ErrorCode invertCorrelation(ClusterWork& work) {
    Matrix& inverse = work.inverse;
    const ErrorCode code = invertRegular(work.moments.correlation, work.scratch, inverse);
    if (code != success) return code;
    for (Index i = 0; i < inverse.rows(); ++i) {
        for (Index j = 0; j < i; ++j) std::swap(inverse(i, j), inverse(j, i));
    }
    return success;
}

double squaredDistance(const double* a, const double* b, Index p) {
    double sum = 0.0;
    for (Index j = 0; j < p; ++j) sum += (a[j] - b[j]) * (a[j] - b[j]);
    return sum;
}

// (a - b)' R^-1 (a - b)
double mahalanobisDistance(const double* a, const double* b, Index p, ClusterWork& work) {
    double* const difference = work.difference.data();
    double* const product = work.product.data();
    for (Index j = 0; j < p; ++j) {
        difference[j] = a[j] - b[j];
        product[j] = 0.0;
    }
    for (Index j = 0; j < p; ++j) {
        const double* column = work.inverse.row(j);
        for (Index i = 0; i < p; ++i) product[i] += column[i] * difference[j];
    }
    double sum = 0.0;
    for (Index i = 0; i < p; ++i) sum += difference[i] * product[i];
    return sum;
}

// Mahalanobis or squared Euclidean distances of all pairs of samples, as they are or standardized.
ErrorCode measureSamples(Screens& screens, const DataMatrix& data, ClusterWork& work) {
    const Stage stage = {&screens, 15, 30};
    const Index p = data.variables;
    const bool mahalanobis = work.choice.mahalanobis();
    const auto sample = [&](Index i) { return work.choice.raw() ? data.row(i) : work.standardized.row(i); };
    ClusterMerging& merging = work.merging;
    for (Index a = 0; a < merging.count; ++a) {
        const ErrorCode code = stage.advance(a, merging.count);
        if (code != success) return code;
        const double* first = sample(a);
        const Index row = merging.rowStart(a);
        for (Index b = a + 1; b < merging.count; ++b) {
            const double* second = sample(b);
            merging.distances[row + b] =
                mahalanobis ? mahalanobisDistance(first, second, p, work) : squaredDistance(first, second, p);
        }
    }
    return success;
}

// All variables are equally far from one another, as if without any correlation: this value is kept so that
// reports stay comparable.
ErrorCode measureVariables(ClusterMerging& merging) {
    for (double& distance : merging.distances) distance = 2.0;
    return success;
}

// 2 - 2 r, the mean squared difference of two standardized variables.
ErrorCode measureVariablesByTextbook(const Numerics& numerics, const DataMatrix& data, ClusterWork& work) {
    const ErrorCode code = computeMoments(numerics, data, work);
    if (code != success) return code;
    const Matrix& correlation = work.moments.correlation;
    double* distance = work.merging.distances.data();
    for (Index i = 0; i < correlation.rows(); ++i) {
        for (Index j = i + 1; j < correlation.columns(); ++j) *distance++ = 2.0 - 2.0 * correlation(i, j);
    }
    return success;
}

double classicRoot(double square) {
    return std::sqrt(square);
}

// Rounding can leave the square of a distance of 0 below 0.
double textbookRoot(double square) {
    return std::sqrt(std::max(square, 0.0));
}

// Merges with distances or their squares, as the criterion wants them; levels are distances at the end.
ErrorCode mergeAtDistances(Screens& screens, const Numerics& numerics, ClusterWork& work) {
    const auto root = numerics.textbook ? textbookRoot : classicRoot;
    const auto merge = numerics.textbook ? mergeClustersByTextbook : mergeClusters;
    ClusterMerging& merging = work.merging;
    if (work.isRooted) {
        for (double& distance : merging.distances) distance = root(distance);
    }
    const ErrorCode code = merge(work.choice.criterion, merging, {&screens, 50, 75});
    if (code == success && !work.isRooted) {
        for (ClusterMerge& each : merging.merges) each.level = root(each.level);
    }
    return code;
}

ErrorCode compute(Screens& screens, const Numerics& numerics, const DataMatrix& data, ClusterWork& work) {
    const ClusterChoice& choice = work.choice;
    ErrorCode code = choice.ofVariables || choice.raw() ? success : standardize(numerics, data, work);
    if (code == success) code = screens.setProgress(15);
    if (code == success && !choice.ofVariables && choice.mahalanobis()) code = invertCorrelation(work);
    if (code != success) return code;

    if (!choice.ofVariables) {
        code = measureSamples(screens, data, work);
    } else {
        code = numerics.textbook ? measureVariablesByTextbook(numerics, data, work)
                                 : measureVariables(work.merging);
    }
    if (code == success) code = screens.setProgress(30);
    if (code != success) return code;

    code = screens.setProgress(50);
    if (code == success) code = mergeAtDistances(screens, numerics, work);
    if (code == success) code = screens.setProgress(75);
    if (code != success) return code;
    return screens.setProgress(100); // the dendrogram is worked out while it is written
}

// The first merge is the textbook's, but for variables.
void noteDeviations(AnalysisRun& run, const ClusterWork& work) {
    const Index exact = work.choice.ofVariables ? 0 : 1;
    if (work.merging.merges.size() > exact) noteDeviation(run, "unit cluster, distance, dendrogram");
}

// The rows of both tables have their number a second time, in a cell that has room for all of them.
constexpr int placeWidth = 7;
constexpr int pairWidth = 2 * placeWidth + 5; // two places and "   + "
constexpr int arrowWidth = 5;
constexpr CellFormat levelCell = {18, 9};
// Rows are numbered up to here.
constexpr Index mostNumbered = 999;

void startPlace(Report& report, Index place, bool isNumbered) {
    const NumberText text = numberText(static_cast<double>(place), placeWidth, 0);
    if (isNumbered) {
        startRow(report, place, text.text, placeWidth);
    } else {
        startUnnumberedRow(report, text.text, placeWidth, "---");
    }
}

void writeMerges(Report& report, const ClusterWork& work) {
    const Block<ClusterMerge>& merges = work.merging.merges;
    writeCaption(report, "uniting information as refresh units number and distance");
    startHeader(report, "step", placeWidth);
    writeText(report, "unit cluster", pairWidth);
    writeText(report, "->", arrowWidth);
    writeText(report, "fresh", placeWidth);
    writeText(report, "distance", levelCell.width);
    endRow(report);
    for (Index s = 0; s < merges.size() && !report.lower.isCut(); ++s) {
        const ClusterMerge& merge = merges[s];
        char pair[32];
        std::snprintf(pair, sizeof pair, "%7d   + %7d", merge.first + 1, merge.second + 1);
        startPlace(report, s + 1, s < mostNumbered);
        writeText(report, pair, pairWidth);
        writeText(report, "->", arrowWidth);
        writeInteger(report, merge.second + 1, placeWidth);
        writeCell(report, merge.level, levelCell);
        endRow(report);
    }
    endTable(report);
}

// The first row goes without a number when the table of merges ran out of them.
void writeDendrogram(Report& report, const TextView& labels, ClusterWork& work) {
    const Block<ClusterMerge>& merges = work.merging.merges;
    writeCaption(report, "dendrogram");
    writeCaption(report, "-- case of too much items please view the dendrogram due to save as text file");
    for (Index r = 0; r < work.merging.count && !report.lower.isCut(); ++r) {
        const Index length = writeDendrogramRow(merges.data(), merges.size(), r, work.picture.data());
        work.picture[length] = '\0';
        startPlace(report, r + 1, r > 0 || merges.size() < mostNumbered);
        writeText(report, labels[r], report.formats.width);
        writeText(report, work.picture.data(), static_cast<int>(length));
        endRow(report);
    }
    endTable(report);
}

void writeReport(AnalysisRun& run, ClusterWork& work) {
    const ClusterChoice& choice = work.choice;
    const DataMatrix& data = run.data.working;
    Report& report = run.report;
    char option[120], status[160];
    std::snprintf(option, sizeof option, "-- divided by %s, %s distance, %s",
                  divisions[choice.ofVariables ? 1 : 0], distanceTitles[choice.distance],
                  criterionTitles[choice.criterion]);
    std::snprintf(status, sizeof status, "%s %s", title, option);
    openReport(run, {.title = title, .option = option, .status = status});
    writeMerges(report, work);
    writeDendrogram(report, choice.ofVariables ? data.names : data.labels, work);
}

// The cluster of each sample, of as many as the options ask for. Success or outOfMemory.
ErrorCode keepClusters(AnalysisRun& run, const ClusterWork& work) {
    const ClusterMerging& merging = work.merging;
    const Index clusters = std::min<Index>(run.options.clusterCount, merging.count);
    if (!run.columns.areWanted || work.choice.ofVariables || clusters < 1) return success;
    Block<std::int32_t> numbers;
    const ErrorCode code = numbers.allocate(merging.count);
    if (code != success) return code;
    cutTree(merging.merges.data(), merging.count, clusters, numbers.data());
    return keepColumns(run.columns, merging.count, 1, [&](SampleColumns& columns) {
        columns.add("cluster", [&](Index s) { return numbers[s]; });
    });
}

// Labels are those of what is put into clusters.
ErrorCode describeDendrogram(const AnalysisRun& run, const ClusterWork& work, Chart& chart) {
    const DataMatrix& data = run.data.working;
    const Block<ClusterMerge>& merges = work.merging.merges;
    chart.kind = ChartKind::tree;
    chart.title.set("cluster analysis, %s", criterionTitles[work.choice.criterion]);
    chart.across.hold(0.0);
    const char* const unit = work.choice.ofVariables ? "" : distanceTitles[work.choice.distance];
    chart.across.title.set("%s%sdistance", unit, unit[0] != '\0' ? " " : "");
    chart.tree.clusters = run.options.clusterCount;
    const ErrorCode code = chart.tree.labels.copy(work.choice.ofVariables ? data.names : data.labels) |
                           chart.tree.merges.allocate(merges.size());
    if (code != success) return code;
    std::transform(merges.begin(), merges.end(), chart.tree.merges.begin(), [](const ClusterMerge& merge) {
        return TreeMerge{merge.first, merge.second, merge.level};
    });
    return success;
}

constexpr Picture pictures[] = {
    {"dendrogram", "the tree of clusters, cut into the last N of --clusters N", 0,
     describeResult<ClusterWork, describeDendrogram>},
};

ErrorCode runClusterAnalysis(Screens& screens, AnalysisRun& run) {
    ClusterWork work;
    ErrorCode code = work.allocate(choiceOf(run.options.settings.cluster), *run.numerics, run.data.working);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, *run.numerics, run.data.working, work);
    screens.hideProgress();
    if (code != success) return code;

    noteDeviations(run, work);
    writeReport(run, work);
    code = keepClusters(run, work);
    if (code == success) code = buildPicture(run, work);
    if (code != success) return code;
    closeReport(screens, run.report);
    return success;
}

} // namespace

const Analysis clusterAnalysis = {.fields = fields, .driver = runClusterAnalysis, .pictures = pictures};
