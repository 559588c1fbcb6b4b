#include "analysis/categorical/similarity/similarity.h"

#include <algorithm>
#include <cmath>

#include "analysis/run/run_report.h"
#include "analysis/run/score_graph.h"
#include "numeric/eigen.h"
#include "numeric/moments.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

enum SimilarityModel { multidimensionalScaling, quantification4, principalCoordinates };

constexpr const char* modelWords[] = {"mds", "quant4", "pcoa"};

double mostDimensions(const DataSet& data) {
    return data.loaded.variables - 1;
}

const OptionField fields[] = {
    // The batch runner has a name for each kind instead.
    {.type = OptionType::choice,
     .name = nullptr,
     .help = "",
     .offset = offsetof(AnalysisOptions, similarityModel),
     .control = 4001,
     .choices = modelWords},
    {.type = OptionType::wholeNumber,
     .name = "dimensions",
     .help = "print N dimensions, or as many as there are (2)",
     .offset = offsetof(AnalysisOptions, settings.similarity.dimensions),
     .control = 4004,
     .arrows = 4005,
     .least = 1.0,
     .mostOfData = mostDimensions},
};

// An eigenvalue that is this small beside the largest one is rounding.
constexpr double leastEigenvalue = 1e-10;
constexpr int leastGraphObjects = 3;

struct SimilarityWork {
    Index objects = 0;
    int dimensions = 0;        // that there are, of the largest eigenvalues
    Block<double> matrix;      // objects x objects: that is decomposed
    Block<double> means;       // of the rows, then of the columns
    Block<double> coordinates; // objects x objects, dimension k in column k
    Block<double> eigenvalues; // objects
    Block<double> ratios;      // objects
    Block<double> communality; // objects
    Block<double> printed;     // the values of one table

    ErrorCode allocate(int count) {
        objects = count;
        return matrix.allocate(objects * objects) | means.allocate(2 * objects) |
               coordinates.allocate(objects * objects) | eigenvalues.allocate(objects) |
               ratios.allocate(objects) | communality.allocate(objects) |
               printed.allocate(objects * std::max<Index>(objects, 3));
    }
};

bool isSimilarityMatrix(const DataMatrix& data) {
    if (data.samples != data.variables) return false;
    return std::all_of(data.values.data(), data.values.data() + data.count(),
                       [](double value) { return value == std::trunc(value); });
}

// Off the diagonal the sums of both directions, on it what makes every row sum to 0.
void symmetrise(const DataMatrix& data, SimilarityWork& work) {
    const Index n = work.objects;
    for (Index i = 0; i < n; ++i) {
        double sum = 0.0;
        for (Index j = 0; j < n; ++j) {
            if (j == i) continue;
            work.matrix[i * n + j] = data.values[i * n + j] + data.values[j * n + i];
            sum += work.matrix[i * n + j];
        }
        work.matrix[i * n + i] = -sum;
    }
}

void centreDoubly(const DataMatrix& data, SimilarityWork& work) {
    const Index n = work.objects;
    const double count = static_cast<double>(n);
    double* rowMeans = work.means.data();
    double* columnMeans = rowMeans + n;
    double grandMean = 0.0;
    for (Index i = 0; i < n; ++i) {
        for (Index j = 0; j < n; ++j) {
            rowMeans[i] += data.values[i * n + j];
            columnMeans[j] += data.values[i * n + j];
        }
        grandMean += rowMeans[i];
    }
    grandMean /= count * count;
    for (double& mean : work.means) mean /= count;
    for (Index i = 0; i < n; ++i) {
        for (Index j = 0; j < n; ++j) {
            work.matrix[i * n + j] = data.values[i * n + j] - rowMeans[i] - columnMeans[j] + grandMean;
        }
    }
}

ErrorCode decompose(SimilarityWork& work) {
    const int n = static_cast<int>(work.objects);
    if (!allFinite(work.matrix.data(), work.matrix.size())) return eigenNotConvergent;
    const ErrorCode code =
        SymmetricEigen(n, n, work.coordinates.data(), work.eigenvalues.data(), work.matrix.data());
    if (code != success) return code;
    return allFinite(work.eigenvalues.data(), work.objects) ? success : eigenNotConvergent;
}

ErrorCode computeQuantification4(Screens& screens, const DataMatrix& data, SimilarityWork& work) {
    symmetrise(data, work);
    const ErrorCode code = decompose(work);
    screens.setProgress(30);
    if (code != success) return code;
    work.dimensions = static_cast<int>(work.objects);
    screens.setProgress(100);
    return success;
}

ErrorCode computePrincipalCoordinates(Screens& screens, const DataMatrix& data, SimilarityWork& work) {
    centreDoubly(data, work);
    screens.setProgress(25);
    const ErrorCode code = decompose(work);
    screens.setProgress(50);
    if (code != success) return code;

    const Index n = work.objects;
    const double least = leastEigenvalue * largestMagnitude(work.eigenvalues.data(), n);
    double sum = 0.0;
    Index valuable = 0;
    for (; valuable < n && work.eigenvalues[valuable] > least; ++valuable) sum += work.eigenvalues[valuable];
    double cumulated = 0.0;
    for (Index k = 0; k < valuable; ++k) {
        work.ratios[k] = work.eigenvalues[k] / sum;
        cumulated += work.ratios[k];
        work.communality[k] = cumulated;
        const double length = std::sqrt(work.eigenvalues[k]);
        for (Index i = 0; i < n; ++i) work.coordinates[i * n + k] *= length;
    }
    work.dimensions = static_cast<int>(valuable);
    screens.setProgress(75);
    screens.setProgress(100);
    return success;
}

void writeStart(AnalysisRun& run, const char* title) {
    const Settings& settings = run.options.settings;
    Report& report = run.report;
    report.lower.clear();
    report.lower.append("\n");
    report.lower.append(title);
    report.lower.append("\n");
    report.status.clear();
    report.status.append("status : ");
    report.status.append(title);
    report.status.append(" ");
    SetFormatsFromData(report, run.data, settings.variableStringLength, settings.sampleStringLength);
}

void writeScalingHeading(Screens& screens, AnalysisRun& run) {
    constexpr const char* source = "-- due to  data";
    writeStart(run, "multi dimentional analysis statistics");
    run.report.status.append(source);
    run.report.lower.append(source);
    run.report.lower.append("\n\n\n");
    screens.showLower(run.report);
    screens.showStatus(run.report);
}

struct EigenvalueRow {
    const char* label;
    const Block<double>& values;
};

void writeEigenvalues(Report& report, std::span<const EigenvalueRow> rows, Index shown,
                      Block<double>& scratch) {
    double* end = scratch.data();
    for (const EigenvalueRow& row : rows) end = std::copy_n(row.values.data(), shown, end);
    SetFormatsFromValues(report, scratch.data(), rows.size() * shown);
    WriteVectorHeader(report, static_cast<int>(shown), report.formats.nameLength);
    int number = 0;
    for (const EigenvalueRow& row : rows) {
        WriteValueRow(report, row.values.data(), static_cast<int>(shown), 6, row.label, ++number);
    }
    report.lower.append("\n");
}

void writeCoordinates(Report& report, const DataSet& data, SimilarityWork& work, Index shown) {
    const Index n = work.objects;
    for (Index i = 0; i < n; ++i) {
        std::copy_n(work.coordinates.data() + i * n, shown, work.printed.data() + i * shown);
    }
    SetFormatsFromValues(report, work.printed.data(), n * shown);
    WriteVectorTable(report, static_cast<int>(n), static_cast<int>(shown), work.printed.data(),
                     static_cast<int>(shown), data.working.labels);
    report.lower.append("\n");
}

void writeReport(Screens& screens, AnalysisRun& run, SimilarityModel model, SimilarityWork& work) {
    Report& report = run.report;
    const bool coordinates = model == principalCoordinates;
    const Index shown = (std::min(std::max(run.options.settings.similarity.dimensions, 1), work.dimensions));
    writeStart(run, coordinates ? "principal coordinates analysis statistics"
                                : "quantification 4 analysis statistics");

    const double* matrix = coordinates ? work.matrix.data() : run.data.working.values.data();
    report.lower.append(coordinates ? "\n\tdoubly centered similarity matrix\n" : "\n\tsimilarity matrix\n");
    SetFormatsFromValues(report, matrix, work.objects * work.objects);
    WriteDataTable(report, run.data, matrix);
    report.lower.append("\n");

    const EigenvalueRow rows[] = {
        {"eigen", work.eigenvalues}, {"ratio", work.ratios}, {"communality", work.communality}};
    report.lower.append(coordinates ? "\teigen value, ratio, communality of valuable dimentions\n"
                                    : "\teigen value of dimentions\n");
    writeEigenvalues(report, std::span(rows, coordinates ? 3 : 1), shown, work.printed);

    report.lower.append(coordinates ? "\tstandardized eigen vector\n" : "\teigen vector\n");
    writeCoordinates(report, run.data, work, shown);
    closeReport(screens, report);
}

ErrorCode run(Screens& screens, AnalysisRun& run) {
    const DataMatrix& data = run.data.working;
    const auto model = static_cast<SimilarityModel>(run.kind - similarityKind);
    if (!isSimilarityMatrix(data)) return illegalSimilarityData;
    if (model == multidimensionalScaling) {
        startProgress(screens, run.report);
        screens.hideProgress();
        writeScalingHeading(screens, run);
        return success;
    }

    SimilarityWork work;
    ErrorCode code = work.allocate(data.samples);
    if (code != success) return code;
    startProgress(screens, run.report);
    code = model == quantification4 ? computeQuantification4(screens, data, work)
                                    : computePrincipalCoordinates(screens, data, work);
    screens.hideProgress();
    if (code != success) return code;
    writeReport(screens, run, model, work);
    if (data.variables < leastGraphObjects) return success;
    return buildScoreGraph(screens, run,
                           {.seriesPrefix = "dimention",
                            .seriesCount = work.dimensions,
                            .scores = work.coordinates.data(),
                            .scoreStride = data.samples});
}

} // namespace

const Analysis similarityAnalysis = {.fields = fields, .driver = run};
