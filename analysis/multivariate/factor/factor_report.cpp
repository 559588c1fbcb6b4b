#include "analysis/multivariate/factor/factor_report.h"

#include <algorithm>
#include <cstdio>

#include "analysis/run/run_report.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

struct OptionLine {
    char text[160];
};

OptionLine describeOptions(const FactorOptions& options, Rotation rotation) {
    char rotated[80] = "no rotation";
    if (rotation != Rotation::none) {
        const int criterion = criterionOf(options, rotation);
        const bool oblique = rotation == Rotation::oblique;
        std::snprintf(rotated, sizeof rotated, "%s rotation due to %s criterion",
                      oblique ? "oblique" : "orthogonal",
                      oblique ? obliqueCriteria[criterion] : orthogonalCriteria[criterion]);
    }
    OptionLine line;
    std::snprintf(line.text, sizeof line.text, "-- %s%s%s%s", rotated, options.useSmc != 0 ? ", use SMC" : "",
                  options.repetition != 0 ? ", repetition" : "",
                  options.standardize != 0 ? ", standardized" : "");
    return line;
}

void writeCommunalities(Report& report, const DataMatrix& data, const Block<double>& communality) {
    writeCaption(report, "communality of variables");
    for (Index j = 0; j < communality.size(); ++j) {
        writeCellRow(report, j + 1, data.name(j), communality[j], wideCell);
    }
    endTable(report);
}

// What the communalities or uniquenesses say against the model (Heywood 1931).
void writeDoubts(Report& report, const DataMatrix& data, const FactorModel& model) {
    char line[300];
    for (Index j = 0; j < model.communality.size(); ++j) {
        if (!(model.communality[j] > 1.0)) continue;
        std::snprintf(line, sizeof line, "-- communality of %s passes 1", data.name(j));
        writeOptionLine(report, line);
    }
    if (!model.settling.reached) writeOptionLine(report, "-- repetition is not at its end");
}

// A table with a column for each factor, in its own formats.
void writeTable(Report& report, const char* title, const Matrix& matrix, const RowLabels& labels) {
    SetFormatsFromValues(report, matrix);
    writeCaption(report, title);
    WriteFactorTable(report, matrix, matrix.columns(), labels);
}

void writeSums(Report& report, const char* title, const Block<double>& sums) {
    SetFormatsFromValues(report, sums);
    writeCaption(report, title);
    WriteFactorHeader(report, sums.size(), report.formats.nameLength);
    WriteValueRow(report, sums.data(), sums.size(), 6, "s.s.f.load", 1);
}

void writeOblique(Report& report, const DataMatrix& data, const ObliqueRotation& oblique) {
    writeTable(report, "factor structure matrix in case of oblique rotation", oblique.structure, data.names);
    const Matrix& correlations = oblique.correlations;
    SetFormatsFromValues(report, correlations);
    writeCaption(report, "correlation coefficient matrix in case of oblique rotation");
    WriteFactorTriangle(report, correlations.rows(), correlations.data(), correlations.columns());
}

} // namespace

int criterionOf(const FactorOptions& options, Rotation rotation) {
    return std::clamp(rotation == Rotation::oblique ? options.obliqueCriterion : options.orthogonalCriterion,
                      0, 2);
}

ErrorCode FactorResult::allocate(Index p, Index samples, Index factors) {
    const ErrorCode code = oblique.allocate(p, factors);
    if (code != success) return code;
    return rotated.allocate(p, factors) | rotatedSumsOfSquares.allocate(factors) |
           scores.allocate(samples, factors);
}

void writeFactorReport(AnalysisRun& run, const char* title, const FactorResult& result) {
    const DataMatrix& data = run.data.working;
    const FactorModel& model = result.model;
    const bool isRotated = result.rotation != Rotation::none;
    Report& report = run.report;
    const OptionLine option = describeOptions(run.options.settings.factor, result.rotation);
    openReport(run, {.title = title, .option = option.text, .isSpaced = false});
    if (run.numerics->textbook) writeDoubts(report, data, model);
    endTable(report);
    SetFormatsFromValues(report, model.communality);
    writeCommunalities(report, data, model.communality);
    writeTable(report, isRotated ? "factor loading before rotation" : "factor loading", model.loadings,
               data.names);
    endTable(report);
    writeSums(report,
              isRotated ? "sum square of factor loading before rotation" : "sum square of factor loading",
              model.sumsOfSquares);
    endTable(report);
    // Tables of a rotation have no empty line behind them.
    if (isRotated) {
        writeTable(report, "factor loading after rotation", result.rotated, data.names);
        writeSums(report, "sum square of factor loading after rotation", result.rotatedSumsOfSquares);
    }
    if (result.rotation == Rotation::oblique) writeOblique(report, data, result.oblique);
    if (data.moments == nullptr) writeTable(report, "factor score", result.scores, data.labels);
    endTable(report);
}
