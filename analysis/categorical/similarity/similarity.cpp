#include "analysis/categorical/similarity/similarity.h"

#include <algorithm>
#include <cmath>

#include "analysis/run/run_report.h"
#include "analysis/run/score_charts.h"
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
constexpr Index leastGraphObjects = 3;

struct SimilarityWork {
    Index dimensions = 0;      // that there are, of the largest eigenvalues
    Matrix matrix;             // objects x objects: that is decomposed
    Matrix coordinates;        // objects x objects, dimension k in column k
    Block<double> rowMeans;    // objects
    Block<double> columnMeans; // objects
    Block<double> eigenvalues; // objects
    Block<double> ratios;      // objects
    Block<double> communality; // objects

    [[nodiscard]] ErrorCode allocate(Index objects) {
        return matrix.allocate(objects, objects) | coordinates.allocate(objects, objects) |
               rowMeans.allocate(objects) | columnMeans.allocate(objects) | eigenvalues.allocate(objects) |
               ratios.allocate(objects) | communality.allocate(objects);
    }
};

bool isSimilarityMatrix(const DataMatrix& data) {
    if (data.samples != data.variables) return false;
    return std::all_of(data.values.data(), data.values.data() + data.count(),
                       [](double value) { return value == std::trunc(value); });
}

// Off the diagonal the sums of both directions, on it what makes every row sum to 0.
void symmetrise(const DataMatrix& data, Matrix& matrix) {
    const Index n = matrix.rows();
    for (Index i = 0; i < n; ++i) {
        double sum = 0.0;
        for (Index j = 0; j < n; ++j) {
            if (j == i) continue;
            matrix(i, j) = data.at(i, j) + data.at(j, i);
            sum += matrix(i, j);
        }
        matrix(i, i) = -sum;
    }
}

void centreDoubly(const DataMatrix& data, SimilarityWork& work) {
    const Index n = work.matrix.rows();
    const double count = static_cast<double>(n);
    double grandMean = 0.0;
    for (Index i = 0; i < n; ++i) {
        const double* row = data.row(i);
        for (Index j = 0; j < n; ++j) {
            work.rowMeans[i] += row[j];
            work.columnMeans[j] += row[j];
        }
        grandMean += work.rowMeans[i];
    }
    grandMean /= count * count;
    for (double& mean : work.rowMeans) mean /= count;
    for (double& mean : work.columnMeans) mean /= count;
    for (Index i = 0; i < n; ++i) {
        const double* row = data.row(i);
        double* centred = work.matrix.row(i);
        for (Index j = 0; j < n; ++j) {
            centred[j] = row[j] - work.rowMeans[i] - work.columnMeans[j] + grandMean;
        }
    }
}

ErrorCode decompose(SimilarityWork& work) {
    if (!allFinite(work.matrix)) return eigenNotConvergent;
    const ErrorCode code = SymmetricEigen(work.coordinates, work.eigenvalues, work.matrix);
    if (code != success) return code;
    return allFinite(work.eigenvalues) ? success : eigenNotConvergent;
}

// Gives the eigenvectors of valuable dimensions the length of the roots of their eigenvalues.
void scaleCoordinates(SimilarityWork& work) {
    const Index n = work.matrix.rows();
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
        for (Index i = 0; i < n; ++i) work.coordinates(i, k) *= length;
    }
    work.dimensions = valuable;
}

ErrorCode computeQuantification4(Screens& screens, const DataMatrix& data, SimilarityWork& work) {
    symmetrise(data, work.matrix);
    ErrorCode code = decompose(work);
    if (code == success) code = screens.setProgress(30);
    if (code != success) return code;
    work.dimensions = work.matrix.rows();
    return screens.setProgress(100);
}

ErrorCode computePrincipalCoordinates(Screens& screens, const DataMatrix& data, SimilarityWork& work) {
    centreDoubly(data, work);
    ErrorCode code = screens.setProgress(25);
    if (code == success) code = decompose(work);
    if (code == success) code = screens.setProgress(50);
    if (code != success) return code;
    scaleCoordinates(work);
    code = screens.setProgress(75);
    if (code != success) return code;
    return screens.setProgress(100);
}

void setFormatsFor(Report& report, double largest) {
    report.formats = formatsForMagnitude(largest, report.formats.nameLength, report.formats.labelWidth);
}

void writeSimilarities(Report& report, const DataSet& data, const double* matrix) {
    SetFormatsFromValues(report, matrix, data.working.count());
    WriteDataTable(report, data, matrix);
    endTable(report);
}

struct EigenvalueRow {
    const char* label;
    const Block<double>& values;
};

void writeEigenvalues(Report& report, std::span<const EigenvalueRow> rows, Index shown) {
    double largest = 0.0;
    for (const EigenvalueRow& row : rows)
        largest = std::max(largest, largestMagnitude(row.values.data(), shown));
    setFormatsFor(report, largest);
    WriteVectorHeader(report, shown, report.formats.nameLength);
    Index number = 0;
    for (const EigenvalueRow& row : rows)
        WriteValueRow(report, row.values.data(), shown, 6, row.label, ++number);
    endTable(report);
}

void writeCoordinates(Report& report, const DataMatrix& data, const Matrix& coordinates, Index shown) {
    double largest = 0.0;
    for (Index i = 0; i < coordinates.rows(); ++i)
        largest = std::max(largest, largestMagnitude(coordinates.row(i), shown));
    setFormatsFor(report, largest);
    WriteVectorTable(report, coordinates, shown, data.labels);
    endTable(report);
}

Index shownDimensions(const AnalysisRun& run, const SimilarityWork& work) {
    return std::min<Index>(std::max(run.options.settings.similarity.dimensions, 1), work.dimensions);
}

void writeQuantification4(AnalysisRun& run, const SimilarityWork& work) {
    const DataSet& data = run.data;
    const Index shown = shownDimensions(run, work);
    Report& report = run.report;
    openReport(run, {.title = "quantification 4 analysis statistics",
                     .status = "quantification 4 analysis statistics "});
    writeCaption(report, "similarity matrix");
    writeSimilarities(report, data, data.working.values.data());
    const EigenvalueRow rows[] = {{"eigen", work.eigenvalues}};
    writeCaption(report, "eigen value of dimentions");
    writeEigenvalues(report, rows, shown);
    writeCaption(report, "eigen vector");
    writeCoordinates(report, data.working, work.coordinates, shown);
}

void writePrincipalCoordinates(AnalysisRun& run, const SimilarityWork& work) {
    const DataSet& data = run.data;
    const Index shown = shownDimensions(run, work);
    Report& report = run.report;
    openReport(run, {.title = "principal coordinates analysis statistics",
                     .status = "principal coordinates analysis statistics "});
    writeCaption(report, "doubly centered similarity matrix");
    writeSimilarities(report, data, work.matrix.data());
    const EigenvalueRow rows[] = {
        {"eigen", work.eigenvalues}, {"ratio", work.ratios}, {"communality", work.communality}};
    writeCaption(report, "eigen value, ratio, communality of valuable dimentions");
    writeEigenvalues(report, rows, shown);
    writeCaption(report, "standardized eigen vector");
    writeCoordinates(report, data.working, work.coordinates, shown);
}

// There is no such model: the report is its heading, with a second empty line.
void writeMultidimensionalScaling(AnalysisRun& run) {
    openReport(run, {.title = "multi dimentional analysis statistics",
                     .option = "-- due to  data",
                     .status = "multi dimentional analysis statistics -- due to  data"});
    endTable(run.report);
}

ErrorCode compute(Screens& screens, const DataMatrix& data, SimilarityModel model, SimilarityWork& work) {
    switch (model) {
    case quantification4:
        return computeQuantification4(screens, data, work);
    case principalCoordinates:
        return computePrincipalCoordinates(screens, data, work);
    case multidimensionalScaling:
        return success;
    }
    return success;
}

void writeReport(AnalysisRun& run, SimilarityModel model, const SimilarityWork& work) {
    switch (model) {
    case quantification4:
        return writeQuantification4(run, work);
    case principalCoordinates:
        return writePrincipalCoordinates(run, work);
    case multidimensionalScaling:
        return writeMultidimensionalScaling(run);
    }
}

ErrorCode buildSimilarityGraph(Screens& screens, AnalysisRun& run, const SimilarityWork& work) {
    if (work.coordinates.rows() < leastGraphObjects) return success;
    return buildScoreGraph(
        screens, run,
        {.seriesPrefix = "dimention", .seriesCount = work.dimensions, .scores = &work.coordinates});
}

ErrorCode buildSimilarityPicture(AnalysisRun& run, SimilarityModel model, const SimilarityWork& work) {
    const bool isCoordinates = model == principalCoordinates;
    return buildPicture<ScoreCharts>(run,
                                     {.title = isCoordinates ? "principal co-ordinates" : "quantification 4",
                                      .axisName = "coordinate",
                                      .scores = &work.coordinates,
                                      .count = work.dimensions,
                                      .shares = isCoordinates ? work.ratios.data() : nullptr,
                                      .isEqualScale = isCoordinates,
                                      .weights = work.eigenvalues.data(),
                                      .weightCount = work.eigenvalues.size(),
                                      .weightName = "eigenvalue"});
}

ErrorCode runSimilarityAnalysis(Screens& screens, AnalysisRun& run) {
    const DataMatrix& data = run.data.working;
    const auto model = static_cast<SimilarityModel>(run.kind - multidimensionalScalingKind);
    if (!isSimilarityMatrix(data)) return illegalSimilarityData;
    SimilarityWork work;
    ErrorCode code = work.allocate(model == multidimensionalScaling ? 0 : data.samples);
    if (code != success) return code;

    code = startProgress(screens, run.report);
    if (code == success) code = compute(screens, data, model, work);
    screens.hideProgress();
    if (code != success) return code;

    writeReport(run, model, work);
    code = keepNumbered(run.columns, "coordinate ", work.coordinates, shownDimensions(run, work));
    if (code == success) code = buildSimilarityPicture(run, model, work);
    if (code != success) return code;
    closeReport(screens, run.report);
    return buildSimilarityGraph(screens, run, work);
}

} // namespace

const Analysis similarityAnalysis = {.fields = fields,
                                     .driver = runSimilarityAnalysis,
                                     .isTable = [](const AnalysisOptions&) { return true; },
                                     .pictures = scorePictures,
                                     .chosenKind = &AnalysisOptions::similarityModel,
                                     .firstKind = multidimensionalScalingKind};
