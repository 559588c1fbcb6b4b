#include "analysis/multivariate/factor/factor_report.h"

#include <algorithm>

#include "analysis/run/run_report.h"
#include "report/table_formats.h"
#include "report/tables.h"

namespace {

void writeOptions(TextBuffer& text, const FactorOptions& options, Rotation rotation) {
    if (rotation == Rotation::none) {
        text.append("-- no rotation");
    } else {
        const int criterion = criterionOf(options, rotation);
        const bool oblique = rotation == Rotation::oblique;
        text.appendFormat("-- %s rotation due to %s criterion", oblique ? "oblique" : "orthogonal",
                          oblique ? obliqueCriteria[criterion] : orthogonalCriteria[criterion]);
    }
    if (options.useSmc != 0) text.append(", use SMC");
    if (options.repetition != 0) text.append(", repetition");
    if (options.standardize != 0) text.append(", standardized");
    text.append("\n\n");
}

void writeCommunalities(Report& report, const DataMatrix& data, const Block<double>& communality) {
    report.lower.append("\tcommunality of variables\n");
    for (Index j = 0; j < communality.size(); ++j) {
        startRow(report, static_cast<int>(j) + 1, data.name(j));
        writeCell(report, communality[j], {18, 12});
        endRow(report);
    }
    report.lower.append("\n");
}

// A table of rows x factors in its own formats.
void writeTable(Report& report, const char* title, const char* when, int rows, int factors,
                const double* matrix, const RowLabels& labels) {
    SetFormatsFromValues(report, matrix, Index{rows} * factors);
    report.lower.appendFormat("\t%s%s\n", title, when);
    WriteFactorTable(report, rows, factors, matrix, factors, labels);
}

void writeSums(Report& report, const char* when, int factors, const double* sums) {
    SetFormatsFromValues(report, sums, factors);
    report.lower.appendFormat("\tsum square of factor loading%s\n", when);
    WriteFactorHeader(report, factors, report.formats.nameLength);
    WriteValueRow(report, sums, factors, 6, "s.s.f.load", 1);
}

void writeOblique(Report& report, const DataMatrix& data, int factors, const ObliqueRotation& oblique) {
    writeTable(report, "factor structure matrix in case of oblique rotation", "", data.variables, factors,
               oblique.structure.data(), data.names);
    const Index count = factors;
    SetFormatsFromValues(report, oblique.correlations.data(), count * count);
    report.lower.append("\tcorrelation coefficient matrix in case of oblique rotation\n");
    WriteFactorTriangle(report, factors, oblique.correlations.data(), factors);
}

} // namespace

int criterionOf(const FactorOptions& options, Rotation rotation) {
    return std::clamp(rotation == Rotation::oblique ? options.obliqueCriterion : options.orthogonalCriterion,
                      0, 2);
}

ErrorCode FactorResult::allocate(int p, int samples, int requested) {
    const ErrorCode code = oblique.allocate(p, requested);
    if (code != success) return code;
    const Index room = factorRoom(requested);
    return model.allocate(p, requested) | rotated.allocate(Index{p} * room) |
           rotatedSumsOfSquares.allocate(room) | scores.allocate(Index{samples} * room);
}

void writeFactorReport(Screens& screens, AnalysisRun& run, const char* title, const FactorResult& result) {
    const Settings& settings = run.options.settings;
    const DataMatrix& data = run.data.working;
    const FactorModel& model = result.model;
    const int factors = model.kept;
    const bool isRotated = result.rotation != Rotation::none;
    const char* const when = isRotated ? " before rotation" : "";
    Report& report = run.report;
    report.lower.clear();
    report.lower.appendFormat("\n%s\n", title);
    writeOptions(report.lower, settings.factor, result.rotation);
    report.status.clear();
    report.status.appendFormat("status : %s", title);

    SetFormatsFromValues(report, model.communality.data(), model.communality.size(),
                         settings.variableStringLength, settings.sampleStringLength);
    writeCommunalities(report, data, model.communality);
    writeTable(report, "factor loading", when, data.variables, factors, model.loadings.data(), data.names);
    report.lower.append("\n");
    writeSums(report, when, factors, model.sumsOfSquares.data());
    report.lower.append("\n");
    if (isRotated) {
        writeTable(report, "factor loading", " after rotation", data.variables, factors,
                   result.rotated.data(), data.names);
        writeSums(report, " after rotation", factors, result.rotatedSumsOfSquares.data());
    }
    if (result.rotation == Rotation::oblique) writeOblique(report, data, factors, result.oblique);
    writeTable(report, "factor score", "", data.samples, factors, result.scores.data(), data.labels);
    report.lower.append("\n");
    closeReport(screens, report);
}
