#include "analysis/multivariate/cluster/cluster.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "analysis/multivariate/cluster/cluster_merging.h"
#include "analysis/multivariate/cluster/dendrogram.h"
#include "analysis/run/run_report.h"
#include "numeric/lu.h"
#include "numeric/moments.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

const char* const divisions[] = {"sample", "variable"};
const char* const distances[] = {"mahalanobis", "standardized", "raw"};
const char* const criteria[] = {"nearest", "furthest", "median", "group-average", "centroid", "ward"};

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

const char* const distanceTitles[] = {"mahalanobis", "standardized value", "raw data value"};
const char* const criterionTitles[] = {"nearest neighbour", "furtherest neighbour", "median method",
                                       "group average",     "centroid method",      "Ward's method"};

constexpr int median = 2;
// Lines of the tables are numbered up to here.
constexpr Index mostNumbered = 999;

// The options as indices of the texts above, whatever a settings file holds.
struct ClusterChoice {
    bool ofVariables;
    int distance;
    int criterion;

    bool mahalanobis() const { return distance == 0; }
    bool raw() const { return distance == 2; }
};

ClusterChoice choiceOf(const ClusterOptions& options) {
    return {.ofVariables = options.division != 0,
            .distance = std::clamp(options.distance, 0, 2),
            .criterion = std::clamp(options.criterion, 0, 5)};
}

struct ClusterWork {
    MomentMatrices moments;
    Block<double> standardized; // samples x variables
    Block<double> factors;      // p x p, scratch of the inversion
    Block<double> inverse;      // p x p: of the correlation matrix
    Block<double> difference;   // p, scratch
    Block<double> product;      // p, scratch: the inverse times the difference
    ClusterMerging merging;
    Block<char> row; // of the dendrogram

    ErrorCode allocate(const ClusterChoice& choice, const DataMatrix& data) {
        const Index p = data.variables;
        const Index items = choice.ofVariables ? p : data.samples;
        ErrorCode code = merging.allocate(items) | row.allocate(dendrogramWidth(items));
        if (choice.ofVariables || choice.raw()) return code;
        code |= moments.allocate(data.variables) | standardized.allocate(data.count());
        if (!choice.mahalanobis()) return code;
        return code | factors.allocate(p * p) | inverse.allocate(p * p) | difference.allocate(p) |
               product.allocate(p);
    }
};

void standardize(const DataMatrix& data, ClusterWork& work) {
    const Index p = data.variables;
    const double* means = work.moments.means.data();
    const double* sds = work.moments.sds.data();
    for (Index at = 0; at < work.standardized.size(); at += p) {
        for (Index j = 0; j < p; ++j) {
            work.standardized[at + j] = (data.values[at + j] - means[j]) / sds[j];
        }
    }
}

// The inverse is left transposed: products with it run along its rows then.
ErrorCode invertCorrelation(int variables, ClusterWork& work) {
    const Index p = variables;
    Block<double>& inverse = work.inverse;
    const ErrorCode code =
        invertRegular(variables, work.moments.correlation.data(), work.factors.data(), inverse.data());
    if (code != success) return code;
    for (Index i = 0; i < p; ++i) {
        for (Index j = 0; j < i; ++j) std::swap(inverse[i * p + j], inverse[j * p + i]);
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
        const double* column = work.inverse.data() + j * p;
        for (Index i = 0; i < p; ++i) product[i] += column[i] * difference[j];
    }
    double sum = 0.0;
    for (Index i = 0; i < p; ++i) sum += difference[i] * product[i];
    return sum;
}

// Distances of all pairs of samples, rows of values; Mahalanobis or squared Euclidean.
void measureSamples(const double* values, Index p, bool mahalanobis, ClusterWork& work) {
    ClusterMerging& merging = work.merging;
    for (Index a = 0; a < merging.count; ++a) {
        const Index row = merging.rowStart(a);
        for (Index b = a + 1; b < merging.count; ++b) {
            merging.distances[row + b] = mahalanobis
                                             ? mahalanobisDistance(values + a * p, values + b * p, p, work)
                                             : squaredDistance(values + a * p, values + b * p, p);
        }
    }
}

// All variables are equally far from one another, as if without any correlation: reports depend on this
// value.
void measureVariables(ClusterMerging& merging) {
    for (double& distance : merging.distances) distance = 2.0;
}

ErrorCode compute(Screens& screens, const DataMatrix& data, const ClusterChoice& choice, ClusterWork& work) {
    const int p = data.variables;
    const bool usesMoments = !choice.ofVariables && !choice.raw();
    if (usesMoments) {
        MeanCovarianceCorrelation(data.values.data(), data.samples, p, work.moments);
        if (anyDeviationBelow(work.moments.sds.data(), p, leastDeviation)) return illegalData;
        standardize(data, work);
    }
    screens.setProgress(15);
    if (choice.ofVariables) {
        measureVariables(work.merging);
    } else {
        if (choice.mahalanobis()) {
            const ErrorCode code = invertCorrelation(p, work);
            if (code != success) return code;
        }
        const double* values = usesMoments ? work.standardized.data() : data.values.data();
        measureSamples(values, p, choice.mahalanobis(), work);
    }
    screens.setProgress(30);
    if (choice.criterion == median) {
        for (double& distance : work.merging.distances) distance = std::sqrt(distance);
    }
    screens.setProgress(50);
    const ErrorCode code = mergeClusters(choice.criterion, work.merging);
    if (code != success) return code;
    screens.setProgress(75);
    screens.setProgress(100); // the dendrogram is worked out while it is written
    return success;
}

void writeRowNumber(Report& report, Index number, bool numbered) {
    if (numbered) {
        report.lower.appendInteger(static_cast<std::int64_t>(number), 3);
    } else {
        report.lower.append("---");
    }
    report.lower.append(",");
}

void writeMerges(Report& report, const Block<ClusterMerge>& merges, bool rooted) {
    report.lower.append("\tuniting information as refresh units number and distance\n"
                        "  n,   step,       unit cluster,   ->,  fresh,          distance\n");
    for (Index s = 0; s < merges.size() && !report.lower.isCut(); ++s) {
        const ClusterMerge& merge = merges[s];
        writeRowNumber(report, s + 1, s < mostNumbered);
        report.lower.appendFormat("%7d,%7d   + %7d,   ->,%7d", static_cast<int>(s) + 1, merge.first + 1,
                                  merge.second + 1, merge.second + 1);
        writeCell(report, rooted ? merge.level : std::sqrt(merge.level), {18, 9});
        endRow(report);
    }
    report.lower.append("\n");
}

// The first row goes without a number when the table of merges ran out of them.
void writeDendrogram(Report& report, const TextList& labels, ClusterWork& work) {
    const Block<ClusterMerge>& merges = work.merging.merges;
    report.lower.append("\tdendrogram\n"
                        "\t-- case of too much items please view the dendrogram due to save as text file\n");
    for (Index r = 0; r < work.merging.count && !report.lower.isCut(); ++r) {
        writeRowNumber(report, r + 1, r > 0 || merges.size() < mostNumbered);
        report.lower.appendInteger(static_cast<std::int64_t>(r) + 1, 7);
        writeText(report, labels[r], report.formats.width);
        report.lower.append(",");
        const Index length = writeDendrogramRow(merges.data(), merges.size(), r, work.row.data());
        report.lower.append(std::string_view(work.row.data(), length));
        endRow(report);
    }
    report.lower.append("\n");
}

void writeReport(Screens& screens, AnalysisRun& run, const ClusterChoice& choice, ClusterWork& work) {
    const Settings& settings = run.options.settings;
    const DataMatrix& data = run.data.working;
    Report& report = run.report;
    report.lower.clear();
    report.lower.append("\ncluster analysis statistics\n");
    report.status.clear();
    report.status.append("status : cluster analysis statistics ");
    for (TextBuffer* text : {&report.lower, &report.status}) {
        text->appendFormat("-- divided by %s, %s distance, %s", divisions[choice.ofVariables ? 1 : 0],
                           distanceTitles[choice.distance], criterionTitles[choice.criterion]);
    }
    report.lower.append("\n\n");

    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);
    writeMerges(report, work.merging.merges, choice.criterion == median);
    writeDendrogram(report, choice.ofVariables ? data.names : data.labels, work);
    closeReport(screens, report);
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    const ClusterChoice choice = choiceOf(run.options.settings.cluster);
    ClusterWork work;
    ErrorCode code = work.allocate(choice, run.data.working);
    if (code != success) return code;

    startProgress(screens, run.report);
    code = compute(screens, run.data.working, choice, work);
    screens.hideProgress();
    if (code != success) return code;
    writeReport(screens, run, choice, work);
    return success;
}

} // namespace

const Analysis clusterAnalysis = {.fields = fields, .driver = run};
